#include "geometry/ground_point.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "foundation/constants.hpp"
#include "geometry/internal/geolocation_steps.hpp"

namespace varnoth {

namespace {

template <SUMMATION ORDER>
double Dot(const double a[3], const double b[3]) {
  if constexpr (ORDER == SUMMATION::FORWARD) return DotProduct(a, b);
  double sum = 0.0;
  for (int i = 3; i-- > 0;) sum += a[i] * b[i];
  return sum;
}

template <SUMMATION ORDER>
double Size(const double v[3]) {
  return std::sqrt(Dot<ORDER>(v, v));
}

}  // namespace

template <SUMMATION ORDER>
GROUND_POINT LocateEcho(const ECHO& echo, GEOLOCATION_WORK& work) {
  GROUND_POINT point;
  const auto ended = [&](SOLVER_STATUS status) {
    point.status = status;
    return point;
  };
  SATELLITE_TRACK track{};
  track.r = Size<ORDER>(echo.sat_pos);
  point.satellite_distance = track.r;
  if (std::isgreater(echo.rpole, track.r)) return ended(SOLVER_STATUS::INSIDE_THE_EARTH);
  SetNadirAxis(work, echo.sat_pos, echo.sat_vel, track.r);
  if (!PlaceSatellite(track, echo.sat_pos)) return ended(SOLVER_STATUS::NO_SATELLITE_ANGLE);
  SetTrackAxes(work, Size<ORDER>(work.cross));
  SetLocalAxes(work, track);
  track.nu = Dot<ORDER>(work.north, work.x_axis);
  track.eu = Dot<ORDER>(work.east, work.x_axis);
  track.vx = Dot<ORDER>(work.x_axis, echo.sat_vel);
  track.vr = -Dot<ORDER>(work.z_axis, echo.sat_vel);

  const double range = echo.fast_time * SPEED_OF_LIGHT * 0.5;
  const double b = echo.rpole + echo.height;
  const double a = echo.requator + echo.height;
  const double e2 = 1.0 - (b * b) / (a * a);
  if (!FindOffset(work.offset, point, track, {b, e2, range}, echo)) return point;

  SetRotation(work.rotation, track);
  std::copy_n(work.offset, 3, work.offset_copy);
  for (int i = 0; i < 3; ++i) {
    work.rotated_offset[i] = Dot<ORDER>(work.rotation + std::ptrdiff_t{3} * i, work.offset);
    work.earth_vect[i] = echo.sat_pos[i] + work.rotated_offset[i];
    point.position[i] = work.earth_vect[i];
  }
  point.heading = HeadingOf(track.nu, track.eu);

  // Target: geodetic latitude from the geocentric one, both on the raised ellipsoid.
  double phi = 0.0;
  PLANE_ANGLE lambda{};
  if (!PlaceTarget(phi, lambda, work.earth_vect, Size<ORDER>(work.earth_vect), e2)) {
    return ended(SOLVER_STATUS::NO_TARGET_ANGLE);
  }
  point.latitude = phi * DEGREES_PER_RADIAN;
  point.longitude = lambda.angle * DEGREES_PER_RADIAN;

  SetNormal(work.normal, phi, lambda.sine, lambda.cosine);
  Subtract(work.look, work.earth_vect, echo.sat_pos);
  point.incidence =
      std::acos(-Dot<ORDER>(work.normal, work.look) / Size<ORDER>(work.look)) * DEGREES_PER_RADIAN;
  return point;
}

/// The points of one range at zero Doppler are a circle around the satellite, S + u cos t + w sin t
/// with u from S to the near point and w = V/|V| × u. On it, the search looks for the raised
/// ellipsoid: (x² + y²)/a² + z²/b² = 1.
bool PlaceNear(const ECHO& echo, const double near[3], double position[3]) {
  constexpr int LIMIT = 6;
  constexpr double SETTLED = 2e-14;  // rad; some 1e-8 m
  const double b = echo.rpole + echo.height;
  const double a = echo.requator + echo.height;
  const double weights[3] = {1.0 / (a * a), 1.0 / (a * a), 1.0 / (b * b)};
  double u[3] = {};
  double w[3] = {};
  Subtract(u, near, echo.sat_pos);
  CrossProduct(w, echo.sat_vel, u);
  const double speed = Length(echo.sat_vel);
  double turn = 0.0;
  for (int steps = 0; steps < LIMIT; ++steps) {
    const double cosine = std::cos(turn);
    const double sine = std::sin(turn);
    double excess = -1.0;
    double slope = 0.0;
    for (int i = 0; i < 3; ++i) {
      const double side = w[i] / speed;
      position[i] = echo.sat_pos[i] + cosine * u[i] + sine * side;
      excess += weights[i] * position[i] * position[i];
      slope += 2.0 * weights[i] * position[i] * (cosine * side - sine * u[i]);
    }
    const double step = excess / slope;
    if (std::isless(std::fabs(step), SETTLED)) return true;
    turn -= step;
  }
  return false;
}

template GROUND_POINT LocateEcho<SUMMATION::FORWARD>(const ECHO&, GEOLOCATION_WORK&);
template GROUND_POINT LocateEcho<SUMMATION::BACKWARD>(const ECHO&, GEOLOCATION_WORK&);

}  // namespace varnoth
