#pragma once

#include "geometry/ground_point.hpp"

namespace varnoth {

/// Places a radar echo on the ground by `LocateEcho`, whose header tells of the method, and words
/// what it returns.
///
/// Given
///  - `sat_pos` (m), `sat_vel` (m/s): satellite state, Earth-fixed; the velocity must not be
///  radial,
///  - `look_direction`: +1 or -1, factor on the cross-track component,
///  - `height` (m): raises both radii by the same amount,
///  - `rpole`, `requator` (m): radii of the ellipsoid,
///  - `fast_time` (s): two-way travel time,
///  - `los_velocity` (m/s): 0 asks for the zero-Doppler point.
///
/// Returned
///  - `earth_vect` (m): target, Earth-fixed,
///  - `heading` (degrees, 0 to 360): of the track at the satellite, from local north over east,
///  - `latitude`, `longitude` (degrees; longitude 0 to 360): geodetic, on the raised ellipsoid,
///  - `incidence` (degrees): between the ellipsoid's normal and the ray to the satellite.
///
/// Throws, behind lines at ALARM, ERROR_ARGUMENT: the satellite lies within the Earth; ERROR_DATA:
/// sphere and ellipsoid do not meet; ERROR_ALGORITHM: no convergence; ERROR_UNHANDLED_CASE: a
/// coordinate is not a number. The outputs are then unchanged, but for a target whose own longitude
/// is not a number.
void geolocation_fast(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity);

/// Writes the lines of `geolocation_fast` for a search that ended: at TRACE its steps, or a
/// failure's at ALARM, behind which it throws as told above.
void TellGeolocation(const ECHO& echo, const GROUND_POINT& point);

}  // namespace varnoth
