#pragma once

#include <cerrno>

namespace varnoth {

/// Repeats a system call that a signal interrupted.
template <class CALL>
auto Restarted(CALL call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace varnoth
