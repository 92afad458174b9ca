#pragma once

#include <cfenv>

namespace varnoth {

/// Makes invalid operations, divisions by zero and overflows of floating point arithmetic raise the
/// signal SIGFPE. A processor without traps (64-bit ARM) only keeps flags of them.
void enable_fp_traps();

/// On such a processor, raises SIGFPE if one of these has happened since the traps were enabled;
/// elsewhere does nothing. A program calls it where its results would go on otherwise.
void raise_missed_trap();

/// Holds the floating point traps of its scope. The C library's conversions of text such as 1E999
/// raise the overflow exception before any range check sees the value; within this scope they give
/// an infinity instead of a signal.
class HELD_TRAPS {
 public:
  HELD_TRAPS() { std::feholdexcept(&environment); }
  ~HELD_TRAPS() { std::fesetenv(&environment); }
  HELD_TRAPS(const HELD_TRAPS&) = delete;
  HELD_TRAPS& operator=(const HELD_TRAPS&) = delete;

 private:
  std::fenv_t environment{};
};

}  // namespace varnoth
