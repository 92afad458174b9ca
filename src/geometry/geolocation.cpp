#include "geometry/geolocation.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "foundation/constants.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "geometry/internal/geolocation_steps.hpp"
#include "geometry/internal/plane_angle.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

VECTOR<double> Vector(const double v[3]) {
  VECTOR<double> result(0, 3);
  std::copy_n(v, 3, result.GetElementBase(0));
  return result;
}

}  // namespace

void geolocation(GEOLOCATION_WORK& work, const VECTOR<double>& sat_pos,
                 const VECTOR<double>& sat_vel, VECTOR<double>& earth_vect, double& heading,
                 double& latitude, double& longitude, double& incidence, double look_direction,
                 double height, double rpole, double requator, double fast_time,
                 double los_velocity) {
  constexpr const char* SOLVER = "geolocation";
  SATELLITE_TRACK track{};
  track.r = Length(sat_pos);
  if (std::isgreater(rpole, track.r)) FailInsideTheEarth(SOLVER, track.r);

  VECTOR<double> z_axis = sat_pos;
  z_axis /= -track.r;
  VECTOR<double> y_axis;
  CrossProduct(y_axis, z_axis, sat_vel);
  y_axis /= Length(y_axis);
  VECTOR<double> x_axis;
  CrossProduct(x_axis, y_axis, z_axis);

  // The products have seen to it that there are three elements of each.
  const double* const position = sat_pos.GetElementBase(0);
  if (!PlaceSatellite(track, position)) FailSatelliteAngle(SOLVER);
  SetLocalAxes(work, track);
  track.nu = DotProduct(Vector(work.north), x_axis);
  track.eu = DotProduct(Vector(work.east), x_axis);
  track.vx = DotProduct(x_axis, sat_vel);
  track.vr = -DotProduct(z_axis, sat_vel);

  const double range = fast_time * SPEED_OF_LIGHT * 0.5;
  const double b = rpole + height;
  const double a = requator + height;
  const double e2 = 1.0 - (b * b) / (a * a);
  const GEOLOCATION_CALL call{
      SOLVER,        position, sat_vel.GetElementBase(0), look_direction, height, b, a,
      " fast_time ", fast_time};
  const int steps = FindOffset(work.offset, track, call, e2, range, los_velocity);

  SetRotation(work.rotation, track);
  const VECTOR<double> offset = Vector(work.offset);
  for (int i = 0; i < 3; ++i) {
    work.rotated_offset[i] = DotProduct(Vector(work.rotation + std::ptrdiff_t{3} * i), offset);
  }
  earth_vect = sat_pos + Vector(work.rotated_offset);
  heading = HeadingOf(track.nu, track.eu);

  double phi = 0.0;
  PLANE_ANGLE lambda{};
  const double* const target = earth_vect.GetElementBase(0);
  if (!PlaceTarget(phi, lambda, target, Length(earth_vect), e2)) {
    FailTargetAngle(SOLVER, "earth_vect[0]", "earth_vect[1]", target);
  }
  latitude = phi * DEGREES_PER_RADIAN;
  longitude = lambda.angle * DEGREES_PER_RADIAN;
  GlobalLog.set(TRACE) << SOLVER << ": " << steps << " iterations.\n";

  SetNormal(work.normal, phi, lambda.sine, lambda.cosine);
  const VECTOR<double> look = earth_vect - sat_pos;
  incidence = std::acos(-DotProduct(Vector(work.normal), look) / Length(look)) * DEGREES_PER_RADIAN;
}

}  // namespace varnoth
