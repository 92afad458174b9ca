#include "geometry/surface_point.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "foundation/constants.hpp"
#include "geometry/internal/geolocation_steps.hpp"

namespace varnoth {

namespace {

constexpr int MAX_FALSE_POSITIONS = 100;
constexpr double ROOT_2 = 1.4142135623730951;
constexpr double NO_STEP = 1e+42;

/// What the searches share: the frame of the satellite, and the steps from a nadir component to a
/// point with its geodetic coordinates and the surface below it.
struct SURFACE_SEARCH {
  const SURFACE_ECHO& echo;
  GEOLOCATION_WORK& work;

  double a = echo.ellipsoid[0];
  double b = echo.ellipsoid[1];
  double e2 = (echo.ellipsoid[2] - echo.ellipsoid[3]) / echo.ellipsoid[2];
  double e2_second = (echo.ellipsoid[2] - echo.ellipsoid[3]) / echo.ellipsoid[3];
  double r = Length(echo.sat_pos);
  double tolerance = 0.0;  ///< m
  double vx = 0.0;         ///< along-track speed, m/s
  double vz = 0.0;         ///< speed towards the centre, m/s

  double dx = 0.0;
  double dy = 0.0;
  double dz = 0.0;
  double axis_distance = 0.0;  ///< of the point, m
  double phi = 0.0;            ///< geodetic latitude, rad
  double lambda = 0.0;         ///< longitude, rad
  double n = 0.0;              ///< a / n is the prime-vertical radius

  /// Sets tolerance and frame. A velocity along the radius gives no frame, and vx stays 0.
  void Begin();
  /// Sets the nadir component, and in Doppler mode the along-track one that follows from it.
  /// Returns the part of the squared range that is left for the other components, m².
  double SetNadir(double nadir);
  /// Sets the other components from that part: in Doppler mode the one across the track alone,
  /// times `side`; otherwise those along and across the track, by their ratio.
  void SetCrossTrack(double square, double side);
  /// From the offset: the point, its geodetic coordinates (Bowring 1976) and the height of the
  /// surface.
  void Place();
  SURFACE_POINT Ended(SURFACE_POINT found) const;
};

void SURFACE_SEARCH::Begin() {
  constexpr double EPSILON = std::numeric_limits<double>::epsilon();
  // A height is a difference of distances from the centre, so its tolerance can not be below a few
  // roundings of these: at half a rounding one search in a hundred does not end.
  constexpr double DEFAULT_FACTOR = 4.0;
  const double factor =
      std::isgreater(work.tolerance_factor, 0.0) ? work.tolerance_factor : DEFAULT_FACTOR;
  tolerance = std::fmax(a, r) * factor * EPSILON;
  const double cross_length = SetNadirAxis(work, echo.sat_pos, echo.sat_vel, r);
  if (cross_length == 0.0) return;
  SetTrackAxes(work, cross_length);
  vx = DotProduct(work.x_axis, echo.sat_vel);
  vz = DotProduct(work.z_axis, echo.sat_vel);
}

double SURFACE_SEARCH::SetNadir(double nadir) {
  const double range = echo.slant_range;
  dz = nadir;
  if (!echo.doppler_mode) return range * range - dz * dz;
  dx = (range * echo.los_velocity - vz * dz) / vx;
  return range * range - dx * dx - dz * dz;
}

void SURFACE_SEARCH::SetCrossTrack(double square, double side) {
  if (echo.doppler_mode) {
    dy = side * std::sqrt(square);
    return;
  }
  dy = echo.look_direction * std::sqrt(square / (echo.squint * echo.squint + 1.0));
  dx = echo.squint * dy;
}

void SURFACE_SEARCH::Place() {
  double* const point = work.earth_vect;
  for (int i = 0; i < 3; ++i) {
    point[i] = echo.sat_pos[i] + dx * work.x_axis[i] + dy * work.y_axis[i] + dz * work.z_axis[i];
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
  work.surface = echo.surface_height(work.context, phi, lambda, n);
}

SURFACE_POINT SURFACE_SEARCH::Ended(SURFACE_POINT found) const {
  std::copy_n(work.earth_vect, 3, found.position);
  found.latitude = phi * DEGREES_PER_RADIAN;
  found.longitude = lambda * DEGREES_PER_RADIAN;
  found.height = work.surface;
  found.squint = dy != 0.0 ? dx / dy : std::copysign(1e+42, dx);
  found.los_velocity = (dx * vx + dz * vz) / echo.slant_range;
  return found;
}

/// The result of a search that found no point: its steps and the status.
SURFACE_POINT Failed(SURFACE_POINT found, SOLVER_STATUS status) {
  found.status = status;
  return found;
}

/// Nadir component of the lowest point that has the range and the line-of-sight velocity; none for
/// a line-of-sight velocity above the speed.
std::optional<double> LowestPoint(const SURFACE_SEARCH& search) {
  const double vx = search.vx;
  const double vz = search.vz;
  const double los_velocity = search.echo.los_velocity;
  const double square = vx * vx + vz * vz - los_velocity * los_velocity;
  if (std::isless(square, 0.0)) return {};
  return (los_velocity * vz + std::sqrt(square) * vx) * search.echo.slant_range /
         (vx * vx + vz * vz);
}

/// Height above the surface of the point with the nadir component `dz`, m. At the start of a search
/// by Doppler the offset has no cross-track component.
std::optional<double> HeightError(SURFACE_SEARCH& search, double dz, bool is_start) {
  const double rest = search.SetNadir(dz);
  // At the lowest point the rest is 0 except for rounding. Further below 0, no point has both range
  // and velocity; a velocity above the along-track speed can lead here.
  constexpr double ROUNDING = 1e-9;
  const double range = search.echo.slant_range;
  if (std::isless(rest, -ROUNDING * range * range)) return {};
  search.SetCrossTrack(std::isless(rest, 0.0) ? 0.0 : rest, is_start ? 0.0 : 1.0);
  search.Place();
  return search.axis_distance / std::cos(search.phi) - search.a / search.n - search.work.surface;
}

/// Distance from the Earth's centre of the point of the surface that has the latitude and longitude
/// of the point at the distance `rho` (m); none if the range does not reach that point.
std::optional<double> NextDistance(SURFACE_SEARCH& search, double rho) {
  const double r = search.r;
  const double range = search.echo.slant_range;
  const double square = search.SetNadir((r * r + range * range - rho * rho) / (2.0 * r));
  if (std::isless(square, 0.0)) return {};
  search.SetCrossTrack(square, search.echo.look_direction);
  search.Place();
  const double height = search.work.surface;
  const double x = (search.a / search.n + height) * std::cos(search.phi);
  const double z = (search.a * (1.0 - search.e2) / search.n + height) * std::sin(search.phi);
  return std::sqrt(x * x + z * z);
}

}  // namespace

SURFACE_POINT SearchByFalsePosition(const SURFACE_ECHO& echo, GEOLOCATION_WORK& work) {
  SURFACE_SEARCH search{echo, work};
  search.Begin();
  SURFACE_POINT found;
  if (search.vx == 0.0) return Failed(found, SOLVER_STATUS::RADIAL_VELOCITY);
  const std::optional<double> lowest = echo.doppler_mode ? LowestPoint(search) : echo.slant_range;
  if (!lowest) return Failed(found, SOLVER_STATUS::NO_INTERSECTION);
  double dz1 = *lowest;
  double dz2 = echo.doppler_mode ? 0.0 : -echo.slant_range;
  std::optional<double> f1 = HeightError(search, dz1, true);
  if (!f1) return Failed(found, SOLVER_STATUS::NO_INTERSECTION);
  std::optional<double> f2 = HeightError(search, dz2, true);
  if (!f2 || std::isgreater(*f1 * *f2, 0.0)) return Failed(found, SOLVER_STATUS::NO_INTERSECTION);

  double last = NO_STEP;
  double before_last = NO_STEP;
  for (;;) {
    const double weight1 = std::fabs(*f1);
    const double weight2 = std::fabs(*f2);
    const double dz = (dz1 * weight2 + dz2 * weight1) / (weight1 + weight2);
    const std::optional<double> f = HeightError(search, dz, false);
    if (!f) return Failed(found, SOLVER_STATUS::NO_INTERSECTION);
    if (std::signbit(*f) == std::signbit(*f1)) {
      dz1 = dz;
      f1 = f;
    } else {
      dz2 = dz;
      f2 = f;
    }
    if (++found.steps > MAX_FALSE_POSITIONS) return Failed(found, SOLVER_STATUS::NO_CONVERGENCE);
    const bool is_open = std::isgreater(std::fabs(*f), search.tolerance);
    if (!is_open || dz == last || dz == before_last) return search.Ended(found);
    before_last = last;
    last = dz;
  }
}

SURFACE_POINT SearchByFixedPoint(const SURFACE_ECHO& echo, GEOLOCATION_WORK& work) {
  SURFACE_SEARCH search{echo, work};
  search.Begin();
  SURFACE_POINT found;
  const auto open = [&](double change) {
    return std::isgreater(std::fabs(change), search.tolerance);
  };
  double rho = search.r - echo.slant_range / ROOT_2;
  double previous = rho - 42.0;  // anything not near rho
  while (open(rho - previous)) {
    ++found.steps;
    if (search.vx == 0.0) return Failed(found, SOLVER_STATUS::RADIAL_VELOCITY);
    const std::optional<double> surface = NextDistance(search, rho);
    if (!surface) return Failed(found, SOLVER_STATUS::NO_INTERSECTION);
    double next = *surface;
    found.change = std::fabs(next - rho);
    found.previous_change = std::fabs(rho - previous);
    if (std::islessequal(std::fabs(next - previous), search.tolerance)) {
      found.swings[found.n_swings++] = {found.steps, found.change};
      next = (next + rho) * 0.5;
    }
    if (found.steps == SURFACE_POINT::MAX_STEPS) {
      if (!open(found.change)) break;
      return Failed(found, SOLVER_STATUS::NO_CONVERGENCE);
    }
    previous = rho;
    rho = next;
  }
  return search.Ended(found);
}

}  // namespace varnoth
