#pragma once

#include <atomic>

namespace varnoth {

/// A stretch of code that no fatal signal cuts in two: while an object lives, the handler only
/// notes the signal, and the process ends where the last such object goes. It costs no system call,
/// unlike blocking the signals.
///
///     {
///       const UNINTERRUPTED whole;
///       filled += size;
///       at_line_start = ends_line;
///     }
///
/// A fault of such a stretch's own (a bad address, a trap) ends the process by that signal, with
/// the failure mark but without a line: keep what can fault outside.
class UNINTERRUPTED {
 public:
  UNINTERRUPTED() : UNINTERRUPTED(NONE) {}
  /// A stretch that writes into a descriptor, and so may wait: the end is not put off while the
  /// descriptor takes nothing, as a pipe does that nobody reads.
  explicit UNINTERRUPTED(int descriptor);
  ~UNINTERRUPTED();
  UNINTERRUPTED(const UNINTERRUPTED&) = delete;
  UNINTERRUPTED& operator=(const UNINTERRUPTED&) = delete;

  /// For the handler: whether the interrupted code is in such a stretch, and will come to its end.
  static bool IsUnderWay();
  /// For the handler: what to do at that end.
  static void AtItsEnd(void (*action)()) { at_end = action; }

 private:
  static constexpr int NONE = -1;
  // Lock-free, as a handler needs them.
  static inline constinit std::atomic<int> depth = 0;
  static inline constinit std::atomic<int> waiting_for = NONE;
  static inline constinit std::atomic<void (*)()> at_end = nullptr;

  const int outer;  ///< the descriptor of the stretch around this one
};

}  // namespace varnoth
