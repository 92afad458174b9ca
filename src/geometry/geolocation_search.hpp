#pragma once

#include "geometry/surface_point.hpp"

namespace varnoth {

/// The searches of geometry/surface_point.hpp as solvers that log and throw: `geolocation_new` by
/// false position, `geolocation_test` by fixed point. For a surface function `terrain`:
///
///     GEOLOCATION_WORK work{};
///     double squint = 0.0, target[3], latitude, longitude, height;
///     geolocation_new(work, ellipsoid, terrain, position, velocity, true, 0.0, squint, target,
///                     latitude, longitude, height, 1.0, 850000.0);
///
/// Given
///  - `work`: its `context` for the surface function, and `tolerance_factor`,
///  - `ellipsoid`: equatorial radius a, polar radius b (m), a², b²,
///  - `sat_pos` (m), `sat_vel` (m/s): satellite state, Earth-fixed,
///  - `doppler_mode`: true: the along-track offset follows from `los_velocity` (m/s), the component
///    of the satellite's velocity along the line of sight; false: from `squint`, the ratio of
///    along-track to cross-track offset,
///  - `look_direction`: +1 right, -1 left of the track; in `doppler_mode` `geolocation_new` ignores
///    it: its points are on the right,
///  - `slant_range` (m).
///
/// Returned
///  - `earth_vect` (m): target, Earth-fixed,
///  - `latitude`, `longitude` (degrees, longitude -180 to 180): geodetic, on `ellipsoid`,
///  - `height_found` (m): of the surface there,
///  - `squint`, in `doppler_mode`: that of the point found; ±1e+42 for a point without cross-track
///    offset,
///  - `los_velocity`, in the other mode and by `geolocation_test` alone: that of the point found.
///
/// Both throw a text, after lines at ALARM, if the velocity points along the radius, if range
/// sphere and surface do not meet, and if the search does not end within 100 (`geolocation_new`) or
/// 50 (`geolocation_test`) steps; the outputs are then unchanged. They also throw what the surface
/// function throws.
void geolocation_new(GEOLOCATION_WORK& work, const double ellipsoid[4],
                     SURFACE_HEIGHT surface_height, const double sat_pos[3],
                     const double sat_vel[3], bool doppler_mode, double los_velocity,
                     double& squint, double earth_vect[3], double& latitude, double& longitude,
                     double& height_found, double look_direction, double slant_range);
void geolocation_test(GEOLOCATION_WORK& work, const double ellipsoid[4],
                      SURFACE_HEIGHT surface_height, const double sat_pos[3],
                      const double sat_vel[3], bool doppler_mode, double& los_velocity,
                      double& squint, double earth_vect[3], double& latitude, double& longitude,
                      double& height_found, double look_direction, double slant_range);

/// The same solvers with the arguments and results of `geolocation_fast`, but with the failures
/// above. They work in `doppler_mode`, on the surface at the constant `height` (m) above the
/// ellipsoid of the two radii. This is the parallel surface, while `geolocation_fast` raises both
/// radii: at a height h the two figures are up to h f²/8 apart (f: flattening; 1.4 mm at 1000 m),
/// so the points differ. The latitude is that on the ellipsoid itself. `work` keeps its `context`.
void geolocation_new(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                     double earth_vect[3], double& heading, double& latitude, double& longitude,
                     double& incidence, double look_direction, double height, double rpole,
                     double requator, double fast_time, double los_velocity);
void geolocation_test(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity);

}  // namespace varnoth
