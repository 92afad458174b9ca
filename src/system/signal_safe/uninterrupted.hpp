#pragma once

#include <atomic>

namespace varnoth {

/// A stretch of code that no fatal signal cuts in two. While an object lives, the handler sets the
/// failure mark and notes the signal; the process ends when the last such object goes. Unlike
/// blocking the signals, it costs no system call.
///
///     {
///       const UNINTERRUPTED whole;
///       filled += size;
///       at_line_start = ends_line;
///     }
///
/// Only one thread at a time may have such objects: the one that writes to the log. A signal that
/// another thread takes may come between.
///
/// A fault of the stretch itself (a bad address, a trap) ends the process by that signal, with the
/// failure mark but without a line: keep code that can fault outside.
class UNINTERRUPTED {
 public:
  UNINTERRUPTED() : UNINTERRUPTED(NONE) {}
  /// A stretch that writes into a descriptor, and so may wait. A signal that comes while the
  /// descriptor takes nothing, such as a full pipe that nobody empties, ends the process at once.
  explicit UNINTERRUPTED(int descriptor);
  ~UNINTERRUPTED();
  UNINTERRUPTED(const UNINTERRUPTED&) = delete;
  UNINTERRUPTED& operator=(const UNINTERRUPTED&) = delete;

  /// For the handler: whether the interrupted code is in such a stretch and will reach its end.
  static bool IsUnderWay();
  /// For the handler: sets what to do at that end.
  static void AtItsEnd(void (*action)());

 private:
  static constexpr int NONE = -1;
  template <class T>
  static T Get(const std::atomic<T>& value) {
    return value.load(std::memory_order_relaxed);
  }
  template <class T>
  static void Set(std::atomic<T>& value, T to) {
    value.store(to, std::memory_order_relaxed);
  }

  // Lock-free, so that a handler may use them.
  static inline constinit std::atomic<int> depth = 0;
  static inline constinit std::atomic<int> waiting_for = NONE;
  static inline constinit std::atomic<void (*)()> at_end = nullptr;

  const int outer;  ///< the descriptor of the stretch around this one
};

}  // namespace varnoth
