#pragma once

#include "geometry/geolocation_work.hpp"
#include "geometry/solver_status.hpp"

namespace varnoth {

/// An echo to be placed on the ground: who heard it, after what time, and on which figure.
struct ECHO {
  const double* sat_pos;  ///< three coordinates, m, Earth-fixed
  const double* sat_vel;  ///< m/s; must not be radial
  double look_direction;  ///< +1 or -1, factor on the cross-track component
  double height;          ///< m, raises both radii by the same amount
  double rpole;           ///< radii of the ellipsoid, m
  double requator;
  double fast_time;           ///< two-way travel time, s
  double los_velocity = 0.0;  ///< m/s; 0 asks for the zero-Doppler point
};

/// Where an echo comes from. The numbers hold as far as the search came: all of them for FOUND,
/// position, heading and residuals for NO_TARGET_ANGLE.
struct GROUND_POINT {
  double position[3] = {};  ///< m, Earth-fixed
  double heading = 0.0;   ///< of the track at the satellite, degrees from north over east, 0 to 360
  double latitude = 0.0;  ///< degrees, geodetic on the raised ellipsoid
  double longitude = 0.0;  ///< degrees, 0 to 360
  double incidence = 0.0;  ///< degrees between the ellipsoid's normal and the ray to the satellite

  SOLVER_STATUS status = SOLVER_STATUS::FOUND;
  int steps = 0;
  double satellite_distance = 0.0;  ///< from the Earth's centre, m
  double radius_change = 0.0;       ///< last change of the Earth radius at the target, m
  double range_residual = 0.0;      ///< m
  double doppler_residual = 0.0;    ///< m/s
};

/// In which order the products of vectors are summed; the last digits differ.
enum class SUMMATION { FORWARD, BACKWARD };

/// Places an echo on the ground: the point of an ellipsoid raised by a height that lies at the
/// slant range c · `fast_time` / 2 from the satellite, on the chosen side of the track, with a
/// wanted line-of-sight velocity.
///
/// Range and line-of-sight velocity give two components of the target's offset in a
/// satellite-centred frame in closed form for a trial Earth radius at the target; the third comes
/// from the range sphere; the trial radius is improved from the resulting geocentric latitude. This
/// is a fixed-point iteration on one number, the Earth radius at the target, to 1e-9 m within
/// twenty steps. The formulas stand in docs/geometry.md.
///
/// Throws nothing, logs nothing, allocates nothing; `work` is scratch. Any number of threads may
/// call it, each with a record of its own.
///
///     GEOLOCATION_WORK work{};
///     const GROUND_POINT point = LocateEcho({position, velocity, 1.0, 0.0, b, a, 0.0056}, work);
///     if (point.status != SOLVER_STATUS::FOUND) std::puts(StatusText(point.status));
template <SUMMATION ORDER = SUMMATION::FORWARD>
GROUND_POINT LocateEcho(const ECHO& echo, GEOLOCATION_WORK& work);

extern template GROUND_POINT LocateEcho<SUMMATION::FORWARD>(const ECHO&, GEOLOCATION_WORK&);
extern template GROUND_POINT LocateEcho<SUMMATION::BACKWARD>(const ECHO&, GEOLOCATION_WORK&);

}  // namespace varnoth
