#pragma once

#include <string>

namespace varnoth {

/// Creates an empty file with mode 0600 under a name that no file has. `pattern` is a path that
/// ends in six "X", which become random characters. Returns the path, or an empty text, with errno
/// set, on failure.
///
///     const std::string path = CreateUniqueFile("insar.pool.XXXXXX");
std::string CreateUniqueFile(const std::string& pattern);

/// Creates an empty file with a new name, mode 0600, in a temporary directory: the one that the
/// variable TMPDIR names or, if that takes no file, `directory`. The path is the directory, "/",
/// `prefix` and six random characters. Returns the path, or an empty text, with errno set, on
/// failure.
std::string CreateTemporaryFile(const char* directory, const char* prefix);

}  // namespace varnoth
