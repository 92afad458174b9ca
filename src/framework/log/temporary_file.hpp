#pragma once

#include <string>

namespace varnoth {

/// Creates an empty file with a new name, mode 0600, that nobody else had before (mkstemp).
///
/// The variable TMPDIR, where it names a usable directory, goes before `directory`. The name is the
/// directory, "/", `prefix` and six random characters.
///
/// Returns the path, or an empty text if neither directory takes the file; errno then tells why.
std::string CreateTemporaryFile(const char* directory, const char* prefix);

}  // namespace varnoth
