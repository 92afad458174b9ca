#pragma once

#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <string_view>

#include "system/signal_safe/restarted.hpp"

namespace varnoth {

/// Opens a file by the flags of open(2), a new one with mode 0666, so that calls on the descriptor
/// wait as usual; -1, with errno set, if it can't be opened. The opening itself waits for nobody: a
/// pipe to write into that nobody reads is refused.
int OpenDescriptor(const char* path, int flags);

/// The same, and calls on the descriptor don't wait either. No difference to an ordinary file.
int OpenAtOnce(const char* path, int flags);

/// Writes all bytes by `write(bytes, size)`, a call like write(2), through interruptions; false,
/// with errno set, if the file takes fewer. `written` tells how many it took.
template <class WRITE>
bool WriteAllBy(WRITE write, const char* bytes, std::size_t size, std::size_t& written) {
  for (written = 0; written < size;) {
    const ssize_t count = Restarted([&] { return write(bytes + written, size - written); });
    if (count == 0) errno = EIO;
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

/// Writes all bytes, through interruptions; false, with errno set, if the file takes fewer.
/// `written` tells how many it took.
bool WriteAll(int descriptor, const char* bytes, std::size_t size, std::size_t& written);

/// Whether a write of a line would not wait now.
bool TakesBytes(int descriptor);

/// Closes; false, with errno set, on failure. The descriptor is gone whatever close says, so an
/// interrupted one is neither repeated nor a failure.
bool CloseDescriptor(int descriptor);

/// Makes a small file that nobody shares and whose whole content is `text`; false, with errno set,
/// if it can't be made. What stands under the name as a link, a second name of another file, a
/// pipe or a device is taken away first, so that nothing behind it is written. An ordinary file is
/// kept, and on the way never empty.
bool ReplaceFile(const char* path, std::string_view text);

}  // namespace varnoth
