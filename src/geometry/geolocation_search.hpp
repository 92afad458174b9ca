#pragma once

#include "geometry/geolocation_work.hpp"

namespace varnoth {

/// Height of the surface (m, above the ellipsoid) at a geodetic latitude and longitude in radians,
/// the longitude from -pi to pi. `n` is sqrt(1 - e² sin²(latitude)): the equatorial radius over `n`
/// is the prime-vertical radius of curvature there. `context` is the work record's.
using SURFACE_HEIGHT = double (*)(void* context, double latitude, double longitude, double n);

/// Two solvers that place a radar echo on a surface given by its height above an ellipsoid, a
/// terrain model for instance: the point at `slant_range` from the satellite that lies on the
/// surface.
///
/// `geolocation_new` searches the nadir component of the target's offset by false position between
/// the lowest point of the range sphere and the satellite's level. It keeps the target between two
/// points, so that steep terrain seldom throws it off. `geolocation_test` is a fixed-point search
/// on the target's distance from the Earth's centre, quicker on gentle terrain, but without an end
/// where the slope exceeds the tangent of the incidence angle; where it swings between two points
/// it goes on from their middle.
///
/// Given
///  - `work`: its `context` for the surface function, and `tolerance_factor`,
///  - `ellipsoid`: equatorial radius a, polar radius b (m), a², b²,
///  - `sat_pos` (m), `sat_vel` (m/s): satellite state, Earth-fixed,
///  - `doppler_mode`: true: the along-track offset follows from `los_velocity` (m/s), the component
///  of the satellite's velocity along the line of sight; false: from `squint`, the ratio of
///  along-track to cross-track offset,
///  - `look_direction`: +1 right, -1 left of the track. `geolocation_new` does not look at it in
///  `doppler_mode`: its points lie on the right,
///  - `slant_range` (m).
///
/// Returned
///  - `earth_vect` (m): target, Earth-fixed,
///  - `latitude`, `longitude` (degrees, longitude -180 to 180): geodetic, on `ellipsoid`,
///  - `height_found` (m): of the surface there,
///  - `squint` in `doppler_mode`: that of the point found; ±1e+42 for one without cross-track
///  offset. `geolocation_new` needs it as a mark meanwhile, so that after a failure its value has
///  no meaning,
///  - `los_velocity` out of `doppler_mode`, by `geolocation_test`: that of the point found.
///
/// The height is found to `tolerance_factor` · 2.2e-16 · (distance of the satellite from the
/// centre); 0 takes a default of 6e-9 m. Bowring's closed form of the latitude adds 0.2 e⁶ h²/a to
/// the place of a point at the height h, 0.7e-6 m at 8848 m. `geolocation_new` divides by the
/// cosine of the latitude, which leaves 4e-6 m at 1 km from a pole.
///
/// Throw, behind lines at ALARM, a text: the velocity points along the radius; range sphere and
/// surface do not meet; no end after 100 or 50 steps. The outputs are then unchanged. What the
/// surface function throws passes through. Input or a surface's height that is not a number ends
/// the search, and shows in the outputs.
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

/// The same solvers with the arguments and results of `geolocation_fast`, in `doppler_mode`, on the
/// surface at the constant `height` (m) above the ellipsoid of the two radii. This is the parallel
/// surface, while `geolocation_fast` raises both radii: at a height h the two figures are up to
/// h f²/8 apart, f the flattening (1.4 mm at 1000 m), and so the points differ. The latitude is
/// that of the ellipsoid as it stands. `work` keeps its `context`.
void geolocation_new(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                     double earth_vect[3], double& heading, double& latitude, double& longitude,
                     double& incidence, double look_direction, double height, double rpole,
                     double requator, double fast_time, double los_velocity);
void geolocation_test(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity);

}  // namespace varnoth
