#pragma once

#include "geometry/geolocation_work.hpp"
#include "geometry/solver_status.hpp"

namespace varnoth {

/// A function that gives the height of the surface (m, above the ellipsoid) at a geodetic latitude
/// and longitude in radians, the longitude from -pi to pi. `n` is sqrt(1 - e² sin²(latitude)): the
/// equatorial radius divided by `n` is the prime-vertical radius of curvature there. `context` is
/// that of the work record.
using SURFACE_HEIGHT = double (*)(void* context, double latitude, double longitude, double n);

/// An echo to place on a surface given by its height above an ellipsoid, such as a terrain model.
struct SURFACE_ECHO {
  const double* ellipsoid;  ///< equatorial radius a, polar radius b (m), a², b²
  SURFACE_HEIGHT surface_height;
  const double* sat_pos;  ///< three coordinates, m, Earth-fixed
  const double* sat_vel;  ///< m/s
  bool doppler_mode;    ///< the along-track offset follows from `los_velocity`, else from `squint`
  double los_velocity;  ///< component of the satellite's velocity along the line of sight, m/s
  double squint;        ///< ratio of along-track to cross-track offset
  double look_direction;  ///< +1 right, -1 left of the track
  double slant_range;     ///< m
};

/// Where an echo comes from. Only FOUND sets the numbers from position to line-of-sight velocity.
struct SURFACE_POINT {
  double position[3] = {};    ///< m, Earth-fixed
  double latitude = 0.0;      ///< degrees, geodetic, on the ellipsoid
  double longitude = 0.0;     ///< degrees, -180 to 180
  double height = 0.0;        ///< of the surface there, m
  double squint = 0.0;        ///< ±1e+42 for a point without cross-track offset
  double los_velocity = 0.0;  ///< m/s

  SOLVER_STATUS status = SOLVER_STATUS::FOUND;
  int steps = 0;
  // Only the fixed-point search sets the rest.
  double change = 0.0;           ///< of the target's distance from the centre, m, in the last step
  double previous_change = 0.0;  ///< the same in the step before, m

  /// A step of the fixed-point search that returned to where the search was one step earlier, and
  /// went on from the middle.
  struct SWING {
    int step;
    double change;  ///< m
  };
  static constexpr int MAX_STEPS = 50;
  SWING swings[MAX_STEPS] = {};
  int n_swings = 0;
};

/// Two searches for the point of the surface at `slant_range` from the satellite.
///
///     GEOLOCATION_WORK work{};
///     const SURFACE_POINT point = SearchByFixedPoint(
///         {ellipsoid, terrain, position, velocity, true, 0.0, 0.0, 1.0, 850000.0}, work);
///     if (point.status == SOLVER_STATUS::FOUND) std::printf("%f m\n", point.height);
///
/// `SearchByFalsePosition` looks for the nadir component of the target's offset between the lowest
/// point of the range sphere and the level of the satellite. It keeps the target between two
/// points, so that steep terrain seldom throws it off. In `doppler_mode` its points are on the
/// right, whatever `look_direction` is. `SearchByFixedPoint` improves the target's distance from
/// the Earth's centre. It is faster on gentle terrain, but does not converge where the slope
/// exceeds the tangent of the incidence angle.
///
/// The height is accurate to `work.tolerance_factor` · 2.2e-16 · (distance of the satellite from
/// the centre); 0 takes the default factor of 4, which gives 6e-9 m. Bowring's closed form of the
/// latitude (1976) moves a point at the height h by 0.2 e⁶ h²/a, 0.7e-6 m at 8848 m.
/// `SearchByFalsePosition` divides by the cosine of the latitude, which leaves 4e-6 m at 1 km from
/// a pole.
///
/// `status` says that the velocity points along the radius (RADIAL_VELOCITY), that range sphere and
/// surface do not meet (NO_INTERSECTION), or that the search did not end within 100 or 50 steps
/// (NO_CONVERGENCE). Input or a height of the surface that is not a number ends the search and
/// shows in the point. Both log nothing, allocate nothing, and throw only what the surface function
/// throws. `work` provides `context` and `tolerance_factor`, keeps the last height of the surface
/// in `surface`, and is scratch otherwise. Any number of threads may search, each with a record of
/// its own.
SURFACE_POINT SearchByFalsePosition(const SURFACE_ECHO& echo, GEOLOCATION_WORK& work);
SURFACE_POINT SearchByFixedPoint(const SURFACE_ECHO& echo, GEOLOCATION_WORK& work);

}  // namespace varnoth
