#include "geometry/slave_time.hpp"

#include <cmath>

#include "foundation/vector.hpp"
#include "log/log.hpp"

namespace varnoth {

CLOSEST_APPROACH FindClosestApproach(const SCENE_ORBIT& orbit, const double target[3],
                                     double start) {
  constexpr double TOLERANCE = 1e-9;
  constexpr int LIMIT = 100;
  CLOSEST_APPROACH found{.time = start,
                         .range = 0.0,
                         .status = SOLVER_STATUS::FOUND,
                         .corrections = 0,
                         .last_correction = 0.0,
                         .residual = 0.0};
  double d[3] = {};
  for (;;) {
    SATELLITE_STATE state{};
    GetState(orbit, found.time, state);
    Subtract(d, state.position, target);
    found.residual = DotProduct(d, state.velocity);
    if (std::islessequal(std::fabs(found.residual), TOLERANCE)) break;
    found.last_correction = -found.residual / (DotProduct(state.acceleration, d) +
                                               DotProduct(state.velocity, state.velocity));
    found.time += found.last_correction;
    ++found.corrections;
    if (std::islessequal(std::fabs(found.last_correction), TOLERANCE)) break;
    if (found.corrections == LIMIT) {
      found.status = SOLVER_STATUS::NO_CONVERGENCE;
      break;
    }
  }
  found.range = Length(d);
  return found;
}

void TellOpenSearch(const CLOSEST_APPROACH& search) {
  GlobalLog.printf_line(WARNING,
                        "iterations count %d exceeded in CalcSlaveTime( t=%G, Residuals: "
                        "dt =%G, v_sat.r =%G)",
                        search.corrections, search.time, search.last_correction, search.residual);
}

double CalcSlaveTime(const SCENE_ORBIT& orbit, const double target[3], double& range, double t) {
  const CLOSEST_APPROACH found = FindClosestApproach(orbit, target, t);
  if (found.status != SOLVER_STATUS::FOUND) TellOpenSearch(found);
  range = found.range;
  return found.time;
}

}  // namespace varnoth
