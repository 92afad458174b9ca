#pragma once

#include <algorithm>
#include <cmath>

#include "foundation/vector.hpp"
#include "geometry/geolocation_work.hpp"
#include "geometry/ground_point.hpp"
#include "geometry/internal/plane_angle.hpp"

/// The steps that geolocation solvers share; docs/geometry.md has the formulas. They are inline
/// because they are the inner loop of the scene sweep.
namespace varnoth {

inline constexpr double DEGREES_PER_RADIAN = 57.29577951308232;

/// Geocentric position of the satellite and motion along its track.
struct SATELLITE_TRACK {
  double r;  ///< distance from the Earth's centre, m
  double sin_phi;
  double cos_phi;
  PLANE_ANGLE lambda;
  double nu;  ///< north component of the unit along-track axis
  double eu;  ///< east component
  double vx;  ///< along-track speed, m/s
  double vr;  ///< upward speed, m/s
};

/// Sets z_axis and cross; returns the length of cross, which is 0 for a velocity along the radius.
inline double SetNadirAxis(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                           double r) {
  for (int i = 0; i < 3; ++i) work.z_axis[i] = -sat_pos[i] / r;
  CrossProduct(work.cross, work.z_axis, sat_vel);
  return Length(work.cross);
}

/// Sets y_axis, x_axis and the copies, after `SetNadirAxis`.
inline void SetTrackAxes(GEOLOCATION_WORK& work, double cross_length) {
  for (int i = 0; i < 3; ++i) work.y_axis[i] = work.cross[i] / cross_length;
  CrossProduct(work.x_axis, work.y_axis, work.z_axis);
  std::copy_n(work.y_axis, 3, work.y_copy);
  std::copy_n(work.z_axis, 3, work.z_copy);
}

/// Sets latitude and longitude of the track from the satellite's position and its `r`; false for
/// coordinates that are not numbers.
inline bool PlaceSatellite(SATELLITE_TRACK& track, const double sat_pos[3]) {
  const double phi = std::asin(sat_pos[2] / track.r);
  track.sin_phi = std::sin(phi);
  track.cos_phi = std::cos(phi);
  return AngleOf(sat_pos[0], sat_pos[1], track.lambda);
}

/// Sets north and east at the sub-satellite point.
inline void SetLocalAxes(GEOLOCATION_WORK& work, const SATELLITE_TRACK& track) {
  work.north[0] = -track.lambda.cosine * track.sin_phi;
  work.north[1] = -track.lambda.sine * track.sin_phi;
  work.north[2] = track.cos_phi;
  work.east[0] = -track.lambda.sine;
  work.east[1] = track.lambda.cosine;
  work.east[2] = 0.0;
}

/// Heading of the track in degrees, 0 to 360.
inline double HeadingOf(double nu, double eu) {
  // On a track due north the product of two unit vectors may round to more than 1.
  const double limit = std::copysign(1.0, nu);
  const double turn = std::acos(std::isgreater(std::fabs(nu), 1.0) ? limit : nu);
  return (std::isgreaterequal(eu, 0.0) ? turn : TWO_PI - turn) * DEGREES_PER_RADIAN;
}

inline constexpr double OFFSET_TOLERANCE = 1e-9;  ///< m, and m/s for the Doppler residual
inline constexpr int OFFSET_STEP_LIMIT = 21;

/// The surfaces on which a target lies: the raised ellipsoid and the sphere around the satellite.
struct TARGET_SURFACES {
  double b;      ///< polar radius, m
  double e2;     ///< eccentricity squared
  double range;  ///< m
};

/// Finds the offset of the target in the satellite frame (m) by a fixed-point iteration on the
/// Earth radius at the target. Sets steps and residuals of `point`. Without an offset, sets its
/// status and returns false.
inline bool FindOffset(double offset[3], GROUND_POINT& point, const SATELLITE_TRACK& track,
                       const TARGET_SURFACES& surfaces, const ECHO& echo) {
  const double e2 = surfaces.e2;
  const double range = surfaces.range;
  const double los_velocity = echo.los_velocity;
  // A residual that is not a number counts as settled, so that it can not keep the loop going.
  const auto open = [](double residual) { return std::isgreaterequal(residual, OFFSET_TOLERANCE); };
  const double r = track.r;
  double rho = surfaces.b / std::sqrt(1.0 - e2 * track.cos_phi * track.cos_phi);
  double previous = 0.0;
  double range_residual = 10.0;
  double doppler_residual = 10.0;
  int steps = 0;
  double dx = 0.0;
  double dy = 0.0;
  double dz = 0.0;
  while (open(std::fabs(rho - previous)) || open(range_residual) || open(doppler_residual)) {
    ++steps;
    dz = (r * r + range * range - rho * rho) / (2.0 * r);
    dx = (track.vr * dz + range * los_velocity) / track.vx;
    const double q = range * range - dx * dx - dz * dz;
    if (std::isless(q, 0.0)) {
      point.steps = steps;
      point.status = SOLVER_STATUS::NO_INTERSECTION;
      return false;
    }
    dy = echo.look_direction * std::sqrt(q);
    const double psi = std::asin(
        ((r - dz) * track.sin_phi + (track.nu * dx - track.eu * dy) * track.cos_phi) / rho);
    const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
    range_residual = std::fabs(length - range);
    doppler_residual = std::fabs((track.vx * dx - track.vr * dz) / length - los_velocity);
    const double cos_psi = std::cos(psi);
    const double next = surfaces.b / std::sqrt(1.0 - e2 * cos_psi * cos_psi);
    if (steps == OFFSET_STEP_LIMIT) {
      point.status = SOLVER_STATUS::NO_CONVERGENCE;
      point.radius_change = std::fabs(next - rho);
      break;
    }
    previous = rho;
    rho = next;
  }
  point.steps = steps;
  point.range_residual = range_residual;
  point.doppler_residual = doppler_residual;
  offset[0] = dx;
  offset[1] = dy;
  offset[2] = dz;
  return point.status == SOLVER_STATUS::FOUND;
}

/// The rotation from the satellite frame to the Earth-fixed one, row by row.
inline void SetRotation(double m[9], const SATELLITE_TRACK& track) {
  const double nu = track.nu;
  const double eu = track.eu;
  const double sin_phi = track.sin_phi;
  const double cos_phi = track.cos_phi;
  const PLANE_ANGLE& lambda = track.lambda;
  m[0] = -nu * sin_phi * lambda.cosine - eu * lambda.sine;
  m[1] = eu * sin_phi * lambda.cosine - nu * lambda.sine;
  m[2] = -cos_phi * lambda.cosine;
  m[3] = -nu * sin_phi * lambda.sine + eu * lambda.cosine;
  m[4] = eu * sin_phi * lambda.sine + nu * lambda.cosine;
  m[5] = -cos_phi * lambda.sine;
  m[6] = nu * cos_phi;
  m[7] = -eu * cos_phi;
  m[8] = -sin_phi;
}

/// Geodetic latitude and longitude (radians) of a target at the given distance from the centre, on
/// the figure with `e2`; false for coordinates that are not numbers.
inline bool PlaceTarget(double& phi, PLANE_ANGLE& lambda, const double target[3], double distance,
                        double e2) {
  const double psi = std::asin(target[2] / distance);
  if (!AngleOf(target[0], target[1], lambda)) return false;
  phi = std::atan(std::tan(psi) / (1.0 - e2));
  return true;
}

/// The ellipsoid's unit normal at a geodetic latitude (radians) and a longitude.
inline void SetNormal(double normal[3], double phi, double sin_lambda, double cos_lambda) {
  const double cos_phi = std::cos(phi);
  normal[0] = cos_lambda * cos_phi;
  normal[1] = sin_lambda * cos_phi;
  normal[2] = std::sin(phi);
}

/// Sets look and returns the incidence angle (degrees), from target and normal of the record.
inline double IncidenceOf(GEOLOCATION_WORK& work, const double sat_pos[3]) {
  Subtract(work.look, work.earth_vect, sat_pos);
  return std::acos(-DotProduct(work.normal, work.look) / Length(work.look)) * DEGREES_PER_RADIAN;
}

}  // namespace varnoth
