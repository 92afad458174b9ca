#pragma once

#include "geometry/ground_point.hpp"
#include "orbit/scene_orbit.hpp"

namespace varnoth::tools {

/// From the master's to the slave's place, in the master's directions, m.
struct BASELINE {
  double perpendicular = 0.0;  ///< positive where the slave is above the line of sight
  double parallel = 0.0;       ///< along the line of sight, positive towards the point
  double along_track = 0.0;    ///< positive where the slave is ahead
};

/// For satellites that are each where they see the point without Doppler shift.
BASELINE BaselineOf(const SATELLITE_STATE& master, const SATELLITE_STATE& slave,
                    const GROUND_POINT& point);

}  // namespace varnoth::tools
