#include "geometry/geolocation_fast.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "foundation/constants.hpp"
#include "foundation/vector.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "geometry/internal/geolocation_steps.hpp"
#include "geometry/internal/plane_angle.hpp"
#include "log/log.hpp"

namespace varnoth {

void geolocation_fast(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity) {
  constexpr const char* SOLVER = "geolocation_fast";
  SATELLITE_TRACK track{};
  track.r = Length(sat_pos);
  if (std::isgreater(rpole, track.r)) FailInsideTheEarth(SOLVER, track.r);
  if (!PlaceSatellite(track, sat_pos)) FailSatelliteAngle(SOLVER);
  SetTrackAxes(work, SetNadirAxis(work, sat_pos, sat_vel, track.r));
  SetLocalAxes(work, track);
  track.nu = DotProduct(work.north, work.x_axis);
  track.eu = DotProduct(work.east, work.x_axis);
  track.vx = DotProduct(work.x_axis, sat_vel);
  track.vr = -DotProduct(work.z_axis, sat_vel);

  const double range = fast_time * SPEED_OF_LIGHT * 0.5;
  const double b = rpole + height;
  const double a = requator + height;
  const double e2 = 1.0 - (b * b) / (a * a);
  const GEOLOCATION_CALL call{SOLVER, sat_pos, sat_vel,       look_direction, height,
                              b,      a,       " fast_time ", fast_time};
  const int steps = FindOffset(work.offset, track, call, e2, range, los_velocity);

  SetRotation(work.rotation, track);
  std::copy_n(work.offset, 3, work.offset_copy);
  for (int i = 0; i < 3; ++i) {
    work.rotated_offset[i] = DotProduct(work.rotation + std::ptrdiff_t{3} * i, work.offset);
    work.earth_vect[i] = sat_pos[i] + work.rotated_offset[i];
    earth_vect[i] = work.earth_vect[i];
  }
  heading = HeadingOf(track.nu, track.eu);

  // Target: geodetic latitude from the geocentric one, both on the raised ellipsoid.
  double phi = 0.0;
  PLANE_ANGLE lambda{};
  if (!PlaceTarget(phi, lambda, work.earth_vect, Length(work.earth_vect), e2)) {
    FailTargetAngle(SOLVER, "earth_vect.x", "earth_vect.y", work.earth_vect);
  }
  latitude = phi * DEGREES_PER_RADIAN;
  longitude = lambda.angle * DEGREES_PER_RADIAN;
  GlobalLog.set(TRACE) << SOLVER << ": " << steps << " iterations.\n";

  SetNormal(work.normal, phi, lambda.sine, lambda.cosine);
  incidence = IncidenceOf(work, sat_pos);
}

}  // namespace varnoth
