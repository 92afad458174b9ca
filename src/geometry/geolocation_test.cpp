#include <cmath>

#include "geometry/geolocation_search.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "geometry/internal/surface_search.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr const char* SOLVER = "geolocation_test";
constexpr int STEP_LIMIT = 50;
constexpr double ROOT_2 = 1.4142135623730951;

[[noreturn]] void FailInStep(const SURFACE_SEARCH& search, int step, const char* text) {
  LogStep(SOLVER, step);
  search.LogFailedCall();
  throw text;
}

/// Places the point at the distance `rho` (m) from the Earth's centre and gives the distance of the
/// point of the surface with the same latitude and longitude.
double NextDistance(SURFACE_SEARCH& search, double rho, double los_velocity, double squint,
                    int step) {
  if (search.vx == 0.0) {
    LogVerticalVelocity(SOLVER);
    FailInStep(search, step, "geolocation_test: Vertical velocity not allowed (v_tan=0)!");
  }
  const double r = search.r;
  const double range = search.range;
  const double square = search.Take((r * r + range * range - rho * rho) / (2.0 * r), los_velocity);
  if (std::isless(square, 0.0)) {
    LogNoIntersection(SOLVER);
    FailInStep(search, step, "geolocation_test: No intersection with earth (negative radiant).");
  }
  if (search.doppler_mode) {
    search.dy = search.look_direction * std::sqrt(square);
  } else {
    search.Split(square, squint);
  }
  search.Place();
  const double height = search.work.surface;
  const double x = (search.a / search.n + height) * std::cos(search.phi);
  const double z = (search.a * (1.0 - search.e2) / search.n + height) * std::sin(search.phi);
  return std::sqrt(x * x + z * z);
}

}  // namespace

void geolocation_test(GEOLOCATION_WORK& work, const double ellipsoid[4],
                      SURFACE_HEIGHT surface_height, const double sat_pos[3],
                      const double sat_vel[3], bool doppler_mode, double& los_velocity,
                      double& squint, double earth_vect[3], double& latitude, double& longitude,
                      double& height_found, double look_direction, double slant_range) {
  SURFACE_SEARCH search{SOLVER,  work,         ellipsoid,      surface_height, sat_pos,
                        sat_vel, doppler_mode, look_direction, slant_range};
  search.Begin();
  const auto open = [&](double change) {
    return std::isgreater(std::fabs(change), search.tolerance);
  };
  double rho = search.r - slant_range / ROOT_2;
  double previous = rho - 42.0;  // anything that is not near rho
  int steps = 0;
  while (open(rho - previous)) {
    ++steps;
    double next = NextDistance(search, rho, los_velocity, squint, steps);
    const double change = std::fabs(next - rho);
    if (std::islessequal(std::fabs(next - previous), search.tolerance)) {
      GlobalLog.set(INFO) << SOLVER << ": Alternating points detected in interation " << steps
                          << " at radius change " << change
                          << ". Selecting new value in the middle.\n";
      next = (next + rho) * 0.5;
    }
    if (steps == STEP_LIMIT) {
      if (!open(change)) break;
      GlobalLog.set(ALARM) << SOLVER << ": convergence problem. Residual error after " << steps
                           << " iterations: " << change
                           << " (previous: " << std::fabs(rho - previous) << ")\n";
      search.LogFailedCall();
      throw "geolocation_test: Convergence problem!";
    }
    previous = rho;
    rho = next;
  }
  search.Deliver(steps, squint, earth_vect, latitude, longitude, height_found);
  if (!doppler_mode) los_velocity = (search.dx * search.vx + search.dz * search.vz) / slant_range;
}

void geolocation_test(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity) {
  GeolocateAtHeight([](auto&&... arguments) { geolocation_test(arguments...); }, work, sat_pos,
                    sat_vel, earth_vect, heading, latitude, longitude, incidence, look_direction,
                    height, rpole, requator, fast_time, los_velocity);
}

}  // namespace varnoth
