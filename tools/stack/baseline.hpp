#pragma once

#include "orbit/scene_orbit.hpp"
#include "tools/vector_3.hpp"

namespace varnoth::tools {

/// A satellite as it sees a point on the ground without Doppler shift: its place (m, Earth-fixed),
/// and three directions of length 1 that are at right angles to each other.
struct VIEW {
  VECTOR_3 place{};
  VECTOR_3 line_of_sight{};  ///< to the point
  VECTOR_3 along{};          ///< of the flight
  VECTOR_3 above{};          ///< of the line of sight, away from the Earth
  double range = 0.0;        ///< to the point, m
};

VIEW ViewOf(const SATELLITE_STATE& state, const VECTOR_3& point);

/// From the master's to the slave's place, in the master's directions, m. Each satellite is where
/// it sees the point without Doppler shift.
struct BASELINE {
  double perpendicular = 0.0;  ///< positive where the slave is above the line of sight
  double parallel = 0.0;       ///< along the line of sight, positive towards the point
  double along_track = 0.0;    ///< positive where the slave is ahead
};

BASELINE BaselineOf(const VIEW& master, const VIEW& slave);

}  // namespace varnoth::tools
