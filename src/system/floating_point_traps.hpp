#pragma once

#include <cfenv>

namespace varnoth {

/// Makes invalid operations, divisions by zero and overflows of floating-point arithmetic raise the
/// signal SIGFPE. A processor without traps (64-bit ARM) only sets its flags.
void enable_fp_traps();

/// On a processor without traps, raises SIGFPE if one of these flags is set; elsewhere does
/// nothing. A program calls it before it passes its results on.
void raise_missed_trap();

/// Holds off the floating-point traps in its scope, and drops the flags that its scope sets. The C
/// library's conversion of a text such as 1E999 raises the overflow exception before a range check
/// can see the value; in this scope it returns an infinity and raises no signal.
///
///     const HELD_TRAPS held;
///     height = std::strtod(text, nullptr);
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
