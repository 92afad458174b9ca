#pragma once

#include "orbit/general_orbit.hpp"

namespace varnoth {

/// Position (m), velocity (m/s) and acceleration (m/s²) of a satellite, Earth-fixed.
struct SATELLITE_STATE {
  double position[3];
  double velocity[3];
  double acceleration[3];
};

/// State of an orbit at a time (s) on the caller's axis; the orbit's time offset is added.
inline void GetPosition(const SCENE_ORBIT& orbit, double time, double position[3]) {
  orbit.core->GetPosition(time + orbit.time_offset, position);
}
inline void GetVelocity(const SCENE_ORBIT& orbit, double time, double velocity[3]) {
  orbit.core->GetVelocity(time + orbit.time_offset, velocity);
}
inline void GetState(const SCENE_ORBIT& orbit, double time, SATELLITE_STATE& state) {
  GetPosition(orbit, time, state.position);
  GetVelocity(orbit, time, state.velocity);
  orbit.core->GetAcceleration(time + orbit.time_offset, state.acceleration);
}

/// Time (s, before the orbit's time offset) at which an orbit passes closest to a fixed point
/// `target` (m, Earth-fixed): a Newton search on f(t) = (P(t) - target) · V(t) from `t` on, to
/// |f| <= 1e-9 m²/s or a correction of 1e-9 s.
///
/// `range` (m) is the distance at the last evaluation, so it belongs to the time before the last
/// correction. A search that has not ended after a hundred corrections is told at WARNING and
/// returns what it has.
double CalcSlaveTime(const SCENE_ORBIT& orbit, const double target[3], double& range, double t);

}  // namespace varnoth
