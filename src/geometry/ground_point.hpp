#pragma once

#include "geometry/geolocation_work.hpp"
#include "geometry/solver_status.hpp"

namespace varnoth {

/// An echo to place on the ground: who received it, after what time, and on which figure.
struct ECHO {
  const double* sat_pos;  ///< three coordinates, m, Earth-fixed
  const double* sat_vel;  ///< m/s; must not be radial
  double look_direction;  ///< +1 right, -1 left of the track; factor on the cross-track component
  double height;          ///< m, raises both radii by the same amount
  double rpole;           ///< radii of the ellipsoid, m
  double requator;
  double fast_time;           ///< two-way travel time, s
  double los_velocity = 0.0;  ///< m/s; 0 asks for the zero-Doppler point
};

/// Where an echo comes from. FOUND sets all numbers but `radius_change`; NO_TARGET_ANGLE sets
/// position, heading, steps and residuals. What a search did not reach is 0.
struct GROUND_POINT {
  double position[3] = {};  ///< m, Earth-fixed
  double heading = 0.0;   ///< of the track at the satellite, degrees from north over east, 0 to 360
  double latitude = 0.0;  ///< degrees, geodetic on the raised ellipsoid
  double longitude = 0.0;  ///< degrees, 0 to 360
  double incidence = 0.0;  ///< degrees between the ellipsoid's normal and the ray to the satellite

  SOLVER_STATUS status = SOLVER_STATUS::FOUND;
  int steps = 0;
  double satellite_distance = 0.0;  ///< from the Earth's centre, m
  double radius_change = 0.0;   ///< of the Earth radius at the target, m; for NO_CONVERGENCE alone
  double range_residual = 0.0;  ///< m
  double doppler_residual = 0.0;  ///< m/s
};

/// The order of the terms in the products of vectors; it changes the last digits.
enum class SUMMATION { FORWARD, BACKWARD };

/// Places an echo on the ground: the point on an ellipsoid raised by a height that has the slant
/// range c · `fast_time` / 2 from the satellite, lies on the chosen side of the track, and has the
/// wanted line-of-sight velocity.
///
/// Range and line-of-sight velocity give two components of the target's offset in a
/// satellite-centred frame in closed form for a trial Earth radius at the target; the third comes
/// from the range sphere; the resulting geocentric latitude improves the trial radius. This is a
/// fixed-point iteration on one number, the Earth radius at the target, to 1e-9 m within twenty
/// steps. docs/geometry.md has the formulas.
///
/// Throws nothing, logs nothing, allocates nothing; failures are in the status. `work` is scratch.
/// Any number of threads may call it, each with a record of its own.
///
///     GEOLOCATION_WORK work{};
///     const GROUND_POINT point = LocateEcho({position, velocity, 1.0, 0.0, b, a, 0.0056}, work);
///     if (point.status != SOLVER_STATUS::FOUND) std::puts(StatusText(point.status));
template <SUMMATION ORDER = SUMMATION::FORWARD>
GROUND_POINT LocateEcho(const ECHO& echo, GEOLOCATION_WORK& work);

extern template GROUND_POINT LocateEcho<SUMMATION::FORWARD>(const ECHO&, GEOLOCATION_WORK&);
extern template GROUND_POINT LocateEcho<SUMMATION::BACKWARD>(const ECHO&, GEOLOCATION_WORK&);

/// Places a zero-Doppler echo (`los_velocity` 0) from a point `near` (m) of the same satellite,
/// range and side at another height, some kilometres away at most: six times faster than
/// `LocateEcho`, and within 1e-7 m of it. Sets `position` (m). False if its six steps of Newton's
/// method do not settle; `position` means nothing then.
///
///     double higher[3];
///     const ECHO echo = {position, velocity, 1.0, 100.0, b, a, 0.0056};
///     if (!PlaceNear(echo, point.position, higher)) LocateEcho(echo, work);
bool PlaceNear(const ECHO& echo, const double near[3], double position[3]);

}  // namespace varnoth
