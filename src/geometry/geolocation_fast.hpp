#pragma once

#include "geometry/ground_point.hpp"

namespace varnoth {

/// Places a radar echo on the ground by `LocateEcho` (geometry/ground_point.hpp describes the
/// method), logs the outcome and throws on failure.
///
///     GEOLOCATION_WORK work{};
///     double target[3], heading, latitude, longitude, incidence;
///     geolocation_fast(work, position, velocity, target, heading, latitude, longitude, incidence,
///                      1.0, 0.0, 6356752.3, 6378137.0, 0.0056, 0.0);
///
/// Given
///  - `sat_pos` (m), `sat_vel` (m/s): satellite state, Earth-fixed; no radial velocity,
///  - `look_direction`: +1 (right) or -1 (left of the track), factor on the cross-track component,
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
/// Throws, after lines at ALARM, ERROR_ARGUMENT: the satellite lies within the Earth; ERROR_DATA:
/// sphere and ellipsoid do not meet; ERROR_ALGORITHM: no convergence, or a coordinate of the target
/// is not a number; ERROR_UNHANDLED_CASE: a coordinate of the satellite is not a number. The
/// outputs are then unchanged, except that a target that is not a number sets `earth_vect` and
/// `heading`.
void geolocation_fast(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity);

/// Writes the lines of `geolocation_fast` for the result of `LocateEcho`: the number of steps at
/// TRACE, or those of a failure at ALARM, and then throws as `geolocation_fast` does.
void TellGeolocation(const ECHO& echo, const GROUND_POINT& point);

}  // namespace varnoth
