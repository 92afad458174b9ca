#include <cstdio>

#include "orbit/scene_orbit.hpp"
#include "pass.hpp"

using namespace varnoth;

int main() try {
  GlobalLog.configure("", "orbit", ALARM, ALARM);
  const PASS pass = FlyPass(7.071e6, 0.3);
  SCENE_ORBIT orbit;
  orbit.SetSamples("localhermite_4_4", pass.times, pass.positions, pass.velocities);
  SATELLITE_STATE state;
  GetState(orbit, 36063.5, state);
  for (const double* v : {state.position, state.velocity, state.acceleration})
    std::printf("%15.5f %15.5f %15.5f\n", v[0], v[1], v[2]);
} catch (const ERROR_EXCEPTION& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
