#include "system/floating_point_traps.hpp"

namespace varnoth {

void enable_fp_traps() { feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW); }

}  // namespace varnoth
