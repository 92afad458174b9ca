#pragma once

#include <cerrno>

namespace varnoth {

/// Makes a system call, and repeats it as long as a signal interrupts it (a negative result with
/// errno EINTR). Returns the last result.
///
///     const ssize_t count = Restarted([&] { return ::read(descriptor, block, sizeof block); });
template <class CALL>
auto Restarted(CALL call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace varnoth
