#pragma once

#include <string_view>

#include "framework/log/owned_file.hpp"

namespace varnoth {

/// Opens a C stream by the flags of open(2), a new file with mode 0666; null, with errno set, if it
/// can't be opened. Calls on it that a signal interrupts go on. A pipe to write into that nobody
/// reads is refused instead of waited for.
OWNED_FILE OpenStream(const char* path, int flags);

/// Makes a small file that nobody shares and whose whole content is `text`; false, with errno set,
/// if it can't be made. What stands under the name as a link, a second name of another file, a
/// pipe or a device is taken away first, so that nothing behind it is written. An ordinary file is
/// kept, and on the way never empty. Uses system calls alone, so that a signal handler may.
bool ReplaceFile(const char* path, std::string_view text);

}  // namespace varnoth
