#include "driver/scene_geometry.hpp"

#include <cmath>

#include "geometry/geolocation_fast.hpp"
#include "geometry/slave_time.hpp"

namespace varnoth {

GROUND_POINT Locate(const GEOMETRY_STATE& state, GEOLOCATION_WORK& work, const double position[3],
                    const double velocity[3], double side, double height, double range_time) {
  GROUND_POINT point;
  geolocation_fast(work, position, velocity, point.position, point.heading, point.latitude,
                   point.longitude, point.incidence, side, height, state.rpole, state.requator,
                   range_time, 0.0);
  return point;
}

double SlaveTime(const GEOMETRY_STATE& state, const double target[3]) {
  double range = 0.0;
  return CalcSlaveTime(state.slave_orbit, target, range, state.slave_first_az_time);
}

double Distance(const double a[3], const double b[3]) {
  double difference[3] = {};
  Subtract(difference, a, b);
  return Length(difference);
}

double EffectiveBaseline(double baseline, double delta_r) {
  return std::sqrt(baseline * baseline - delta_r * delta_r);
}

}  // namespace varnoth
