#pragma once

#include <string>

namespace varnoth::tools {

/// Writes a file that appears whole or not at all: beside its place, and into it when the disk has
/// it. A file that stands there keeps its permissions. Throws std::runtime_error with the reason.
void WriteWholeFile(const std::string& file, const std::string& content);

/// The permissions that this process leaves away from new files and directories (umask).
unsigned CreationMask();

}  // namespace varnoth::tools
