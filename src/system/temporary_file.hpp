#pragma once

#include <string>

namespace varnoth {

/// Creates an empty file, mode 0600, that nobody else had before, from a path that ends in six "X",
/// which become random characters. Returns the path, or an empty text on failure; errno then tells
/// why.
std::string CreateUniqueFile(const std::string& pattern);

/// Creates an empty file with a new name in a temporary directory.
///
/// The variable TMPDIR, where it names a usable directory, goes before `directory`. The name is the
/// directory, "/", `prefix` and six random characters.
///
/// Returns the path, or an empty text if neither directory takes the file; errno then tells why.
std::string CreateTemporaryFile(const char* directory, const char* prefix);

}  // namespace varnoth
