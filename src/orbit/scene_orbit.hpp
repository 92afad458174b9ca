#pragma once

#include "orbit/general_orbit.hpp"

namespace varnoth {

/// Position (m), velocity (m/s) and acceleration (m/s²) of a satellite, Earth-fixed.
struct SATELLITE_STATE {
  double position[3];
  double velocity[3];
  double acceleration[3];
};

/// State of an orbit at a time (s) on the axis of the scene; adds the orbit's time offset. The
/// orbit must have a core. Throws what the orbit's own operations throw.
///
///     SATELLITE_STATE state{};
///     GetState(orbit, 1000.0, state);
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

}  // namespace varnoth
