#include "geometry/slave_time.hpp"

#include <cmath>

#include "log/log.hpp"

namespace varnoth {

double CalcSlaveTime(const SCENE_ORBIT& orbit, const double target[3], double& range, double t) {
  constexpr double TOLERANCE = 1e-9;
  constexpr int LIMIT = 100;
  double d[3] = {};
  for (int corrections = 0;;) {
    SATELLITE_STATE state{};
    GetState(orbit, t, state);
    Subtract(d, state.position, target);
    const double f = DotProduct(d, state.velocity);
    if (std::islessequal(std::fabs(f), TOLERANCE)) break;
    const double dt =
        -f / (DotProduct(state.acceleration, d) + DotProduct(state.velocity, state.velocity));
    t += dt;
    if (std::islessequal(std::fabs(dt), TOLERANCE)) break;
    if (++corrections == LIMIT) {
      GlobalLog.printf_line(WARNING,
                            "iterations count %d exceeded in CalcSlaveTime( t=%G, Residuals: "
                            "dt =%G, v_sat.r =%G)",
                            LIMIT, t, dt, f);
      break;
    }
  }
  range = Length(d);
  return t;
}

}  // namespace varnoth
