#include "system/floating_point_traps.hpp"

#include <csignal>

namespace varnoth {

namespace {

constexpr int TRAPPED = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;
bool traps_are_missing = false;

}  // namespace

void enable_fp_traps() {
  std::feclearexcept(TRAPPED);
  traps_are_missing = feenableexcept(TRAPPED) == -1;
}

void raise_missed_trap() {
  if (traps_are_missing && std::fetestexcept(TRAPPED) != 0) std::raise(SIGFPE);
}

}  // namespace varnoth
