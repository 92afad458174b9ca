// Places echoes of a scene pool on the ground with the product's own operations, for
// docs/import_check.py. Reads lines of time (s after the pool's reference time), two-way range time
// (s) and height (m); prints for each the Earth-fixed position and the satellite's velocity.

#include <cmath>
#include <cstdio>
#include <iostream>

#include "geometry/ground_point.hpp"
#include "orbit/scene_orbit.hpp"
#include "pool/parameter_pool.hpp"

using namespace varnoth;

int main(int count, char** arguments) try {
  GlobalLog.configure("", "locate_points", NO_LEVEL, NO_LEVEL);
  if (count != 2) throw "usage: locate_points SCENE.pool";
  PARAMETER_POOL pool(arguments[1]);
  SCENE_ORBIT orbit;
  orbit.read(pool);
  ARRAY<double> ellipsoid;
  pool.Read("ellipsoid_parameters", ellipsoid);
  STRING look;
  pool.Read("antenna_look_direction", look);
  const double side = look == STRING("left") ? -1.0 : 1.0;
  const double* const radii = ellipsoid.begin() + 7;
  double time = 0.0;
  double range_time = 0.0;
  double height = 0.0;
  GEOLOCATION_WORK work{};
  while (std::cin >> time >> range_time >> height) {
    SATELLITE_STATE state{};
    GetState(orbit, time, state);
    const GROUND_POINT point = LocateEcho(
        {state.position, state.velocity, side, height, radii[1], radii[0], range_time}, work);
    if (point.status != SOLVER_STATUS::FOUND) throw StatusText(point.status);
    std::printf("%.5f %.5f %.5f %.9f %.9f %.9f\n", point.position[0], point.position[1],
                point.position[2], state.velocity[0], state.velocity[1], state.velocity[2]);
  }
  return 0;
} catch (const char* reason) {
  std::fprintf(stderr, "%s\n", reason);
  return 1;
} catch (const ERROR_EXCEPTION& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
