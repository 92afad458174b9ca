#include "geometry/solver_status.hpp"

namespace varnoth {

const char* StatusText(SOLVER_STATUS status) {
  constexpr const char* TEXTS[] = {
      "found",
      "satellite within the Earth",
      "satellite's position is no number",
      "no intersection of range sphere and ellipsoid",
      "no convergence",
      "target's position is no number",
  };
  return TEXTS[static_cast<int>(status)];
}

}  // namespace varnoth
