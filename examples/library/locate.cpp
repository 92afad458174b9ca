#include <cstdio>

#include "geometry/ground_point.hpp"
#include "orbit/scene_orbit.hpp"
#include "pass.hpp"

using namespace varnoth;

void Locate(const SCENE_ORBIT& orbit, double line, double sample, double height) {
  SATELLITE_STATE state;
  GetState(orbit, 36050 + line / 1650, state);  // the first line's time, s, and lines per second
  const double range_time = 5.5e-3 + sample / 20e6;  // both ways, s, and samples per second
  GEOLOCATION_WORK work;
  const GROUND_POINT point = LocateEcho(
      {state.position, state.velocity, 1, height, 6356752.314245, 6378137, range_time}, work);
  if (point.status != SOLVER_STATUS::FOUND) throw StatusText(point.status);
  std::printf("%.7f E %.7f N\n", point.longitude, point.latitude);
}

int main() {
  GlobalLog.configure("", "locate", ALARM, ALARM);
  const PASS pass = FlyPass(7.071e6, 0.3);
  SCENE_ORBIT orbit;
  orbit.SetSamples("localhermite_4_4", pass.times, pass.positions, pass.velocities);
  Locate(orbit, 0, 0, 0);
  Locate(orbit, 12000, 4000, 0);
  Locate(orbit, 12000, 4000, 850);
}
