#include <cmath>

#include "geometry/geolocation_search.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "geometry/internal/surface_search.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr const char* SOLVER = "geolocation_new";
constexpr int FAILING_STEP = 101;
constexpr double START_POINTS = -42.0;  // as squint: the offset has no cross-track component
constexpr double NO_STEP = 1e+42;

[[noreturn]] void FailInitialValue(const SURFACE_SEARCH& search) {
  LogNoIntersection(SOLVER);
  search.LogFailedCall();
  throw "geolocation_new: No intersection with earth (initial value).";
}

/// Nadir component of the lowest point that has the range and the line-of-sight velocity.
double LowestPoint(const SURFACE_SEARCH& search, double los_velocity) {
  const double vx = search.vx;
  const double vz = search.vz;
  const double square = vx * vx + vz * vz - los_velocity * los_velocity;
  // No direction has more of the velocity in it than the velocity's length.
  if (std::isless(square, 0.0)) FailInitialValue(search);
  return (los_velocity * vz + std::sqrt(square) * vx) * search.range / (vx * vx + vz * vz);
}

/// Height of the point with the nadir component `dz` above the surface, m.
double HeightError(SURFACE_SEARCH& search, double dz, double los_velocity, double squint) {
  const double rest = search.Take(dz, los_velocity);
  // At the lowest point it is 0 but for rounding. Further off no point has the range and the
  // velocity, which a velocity above the along-track speed can ask for.
  constexpr double ROUNDING = 1e-9;
  if (std::isless(rest, -ROUNDING * search.range * search.range)) FailInitialValue(search);
  const double square = std::isless(rest, 0.0) ? 0.0 : rest;
  if (search.doppler_mode) {
    search.dy = squint == START_POINTS ? 0.0 : std::sqrt(square);
  } else {
    search.Split(square, squint);
  }
  search.Place();
  return search.axis_distance / std::cos(search.phi) - search.a / search.n - search.work.surface;
}

}  // namespace

void geolocation_new(GEOLOCATION_WORK& work, const double ellipsoid[4],
                     SURFACE_HEIGHT surface_height, const double sat_pos[3],
                     const double sat_vel[3], bool doppler_mode, double los_velocity,
                     double& squint, double earth_vect[3], double& latitude, double& longitude,
                     double& height_found, double look_direction, double slant_range) {
  SURFACE_SEARCH search{SOLVER,  work,         ellipsoid,      surface_height, sat_pos,
                        sat_vel, doppler_mode, look_direction, slant_range};
  search.Begin();
  if (search.vx == 0.0) {
    LogVerticalVelocity(SOLVER);
    search.LogFailedCall();
    throw "geolocation_new: Vertical velocity not allowed (v_tan=0)!";
  }
  double dz1 = slant_range;
  double dz2 = -slant_range;
  if (doppler_mode) {
    dz1 = LowestPoint(search, los_velocity);
    dz2 = 0.0;
    squint = START_POINTS;
  }
  double f1 = HeightError(search, dz1, los_velocity, squint);
  double f2 = HeightError(search, dz2, los_velocity, squint);
  if (std::isgreater(f1 * f2, 0.0)) FailInitialValue(search);
  if (doppler_mode) squint = 0.0;

  double last = NO_STEP;
  double before_last = NO_STEP;
  int steps = 0;
  for (;;) {
    const double weight1 = std::fabs(f1);
    const double weight2 = std::fabs(f2);
    const double dz = (dz1 * weight2 + dz2 * weight1) / (weight1 + weight2);
    const double f = HeightError(search, dz, los_velocity, squint);
    if (std::signbit(f) == std::signbit(f1)) {
      dz1 = dz;
      f1 = f;
    } else {
      dz2 = dz;
      f2 = f;
    }
    if (++steps == FAILING_STEP) {
      GlobalLog.set(ALARM) << SOLVER << ": Convergence problem.\n";
      throw "Error.";
    }
    if (!std::isgreater(std::fabs(f), search.tolerance) || dz == last || dz == before_last) break;
    before_last = last;
    last = dz;
  }
  search.Deliver(steps, squint, earth_vect, latitude, longitude, height_found);
}

void geolocation_new(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                     double earth_vect[3], double& heading, double& latitude, double& longitude,
                     double& incidence, double look_direction, double height, double rpole,
                     double requator, double fast_time, double los_velocity) {
  GeolocateAtHeight([](auto&&... arguments) { geolocation_new(arguments...); }, work, sat_pos,
                    sat_vel, earth_vect, heading, latitude, longitude, incidence, look_direction,
                    height, rpole, requator, fast_time, los_velocity);
}

}  // namespace varnoth
