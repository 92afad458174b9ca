#include "geometry/solver_status.hpp"

namespace varnoth {

const char* StatusText(SOLVER_STATUS status) {
  constexpr const char* TEXTS[] = {
      "found",
      "satellite within the Earth",
      "satellite's position is no number",
      "satellite's velocity is radial",
      "no intersection of range sphere and Earth",
      "no convergence",
      "target's position is no number",
  };
  return TEXTS[static_cast<int>(status)];
}

}  // namespace varnoth
