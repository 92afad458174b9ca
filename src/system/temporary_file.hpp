#pragma once

#include <string>

namespace varnoth {

/// A new file and its descriptor, for reading and writing, which the caller closes. A new program
/// that replaces the process does not get it.
struct TEMPORARY_FILE {
  std::string path;     ///< empty if no file could be made
  int descriptor = -1;  ///< -1, with errno set, if no file could be made
};

/// Creates an empty file with mode 0600 under a name that no file has. `pattern` is a path that
/// ends in six "X", which become random characters. `flags` can be O_APPEND.
///
///     const TEMPORARY_FILE file = CreateUniqueFile("insar.pool.XXXXXX");
TEMPORARY_FILE CreateUniqueFile(const std::string& pattern, int flags = 0);

/// The same in a temporary directory: the one that the variable TMPDIR names or, if that takes no
/// file, `directory`. The path is the directory, "/", `prefix` and six random characters.
TEMPORARY_FILE CreateTemporaryFile(const char* directory, const char* prefix, int flags = 0);

}  // namespace varnoth
