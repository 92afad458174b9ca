#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string_view>

#include "system/signal_safe/restarted.hpp"

namespace varnoth {

/// Opens a file by the flags of open(2); a file that it creates has mode 0666. Returns -1, with
/// errno set, on failure. The opening itself never waits: it refuses to open a pipe for writing
/// that nobody reads. Calls on the descriptor wait as usual. A new program that replaces the
/// process does not get the descriptor.
///
///     const int descriptor = OpenDescriptor("insar.pool", O_WRONLY | O_CREAT);
///     std::size_t written = 0;
///     if (!WriteAll(descriptor, text, size, written)) std::perror("insar.pool");
int OpenDescriptor(const char* path, int flags);

/// The same, but calls on the descriptor don't wait either. For an ordinary file that makes no
/// difference.
int OpenAtOnce(const char* path, int flags);

/// Writes all bytes by `write(bytes, size)`, a call like write(2), and restarts it if a signal
/// interrupts it; false, with errno set, if the file takes fewer. `written` receives the number of
/// bytes that the file took.
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

/// The same by write(2).
bool WriteAll(int descriptor, const char* bytes, std::size_t size, std::size_t& written);

/// Hands the rest of a file, block by block, to `take(std::string_view)`; false, with errno set, if
/// it can't be read.
template <class TAKE>
bool ReadAll(int descriptor, TAKE take) {
  char block[1024];  // more would touch further pages of the stack, and most files here are small
  ssize_t count = 0;
  while ((count = Restarted([&] { return ::read(descriptor, block, sizeof block); })) > 0) {
    take(std::string_view(block, static_cast<std::size_t>(count)));
  }
  return count == 0;
}

/// Whether the descriptor takes a line now, without waiting.
bool TakesBytes(int descriptor);

/// Closes; false, with errno set, on failure. The descriptor is gone in any case, so an interrupted
/// close is no failure and needs no repetition.
bool CloseDescriptor(int descriptor);

/// Makes a small file that no other name shares, with `text` as its whole content; false, with
/// errno set, on failure. First removes a link, a second name of another file, a pipe or a device
/// of that name, so that nothing behind it changes. Overwrites an ordinary file in place; the file
/// is never empty meanwhile.
bool ReplaceFile(const char* path, std::string_view text);

}  // namespace varnoth
