#include "geometry/internal/surface_search.hpp"

#include <algorithm>
#include <limits>

#include "geometry/internal/geolocation_report.hpp"
#include "log/log.hpp"

namespace varnoth {

void SURFACE_SEARCH::Begin() {
  constexpr double EPSILON = 2.220446049250313e-16;
  // A height is a difference of distances from the centre, so that less than some roundings of
  // these can't be asked for: at half a rounding one search in a hundred has no end.
  constexpr double DEFAULT_FACTOR = 4.0;
  const double factor =
      std::isgreater(work.tolerance_factor, 0.0) ? work.tolerance_factor : DEFAULT_FACTOR;
  tolerance = std::fmax(a, r) * factor * EPSILON;
  const double cross_length = SetNadirAxis(work, sat_pos, sat_vel, r);
  if (cross_length == 0.0) return;
  SetTrackAxes(work, cross_length);
  vx = DotProduct(work.x_axis, sat_vel);
  vz = DotProduct(work.z_axis, sat_vel);
}

double SURFACE_SEARCH::Take(double nadir, double los_velocity) {
  dz = nadir;
  if (!doppler_mode) return range * range - dz * dz;
  dx = (range * los_velocity - vz * dz) / vx;
  return range * range - dx * dx - dz * dz;
}

void SURFACE_SEARCH::Split(double square, double squint) {
  dy = look_direction * std::sqrt(square / (squint * squint + 1.0));
  dx = squint * dy;
}

void SURFACE_SEARCH::Place() {
  double* const point = work.earth_vect;
  for (int i = 0; i < 3; ++i) {
    point[i] = sat_pos[i] + dx * work.x_axis[i] + dy * work.y_axis[i] + dz * work.z_axis[i];
  }
  axis_distance = std::sqrt(point[0] * point[0] + point[1] * point[1]);
  const double theta = std::atan2(point[2] * a, axis_distance * b);
  const double sine = std::sin(theta);
  const double cosine = std::cos(theta);
  phi = std::atan2(point[2] + e2_second * b * sine * sine * sine,
                   axis_distance - e2 * a * cosine * cosine * cosine);
  lambda = std::atan2(point[1], point[0]);
  const double sin_phi = std::sin(phi);
  n = std::sqrt(1.0 - e2 * sin_phi * sin_phi);
  work.surface = surface_height(work.context, phi, lambda, n);
}

void SURFACE_SEARCH::LogFailedCall() const {
  LogCall({solver, sat_pos, sat_vel, look_direction, work.surface, b, a, " slant_range ", range});
}

void SURFACE_SEARCH::Deliver(int steps, double& squint, double earth_vect[3], double& latitude,
                             double& longitude, double& height_found) const {
  GlobalLog.set(TRACE) << solver << ": " << steps << " iterations.\n";
  std::copy_n(work.earth_vect, 3, earth_vect);
  latitude = phi * DEGREES_PER_RADIAN;
  longitude = lambda * DEGREES_PER_RADIAN;
  height_found = work.surface;
  if (!doppler_mode) return;
  squint = dy != 0.0 ? dx / dy : std::copysign(1e+42, dx);
}

double ConstantHeight(void* context, double /*latitude*/, double /*longitude*/, double /*n*/) {
  return *static_cast<const double*>(context);
}

void SetTrackAngles(GEOLOCATION_WORK& work, const double sat_pos[3], double latitude,
                    double longitude, double& heading, double& incidence) {
  constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
  SATELLITE_TRACK track{};
  track.r = Length(sat_pos);
  // Without a longitude of the satellite, which leaves no target either, there is no heading.
  if (!PlaceSatellite(track, sat_pos)) track.lambda = {NO_NUMBER, NO_NUMBER, NO_NUMBER};
  SetLocalAxes(work, track);
  heading = HeadingOf(DotProduct(work.north, work.x_axis), DotProduct(work.east, work.x_axis));

  const double phi = latitude * (PI / 180.0);
  const double lambda = longitude * (PI / 180.0);
  SetNormal(work.normal, phi, std::sin(lambda), std::cos(lambda));
  incidence = IncidenceOf(work, sat_pos);
}

}  // namespace varnoth
