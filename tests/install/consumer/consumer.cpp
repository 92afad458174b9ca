#include <cmath>
#include <cstdio>

#include "all_headers.hpp"

// The height of the satellite of a pool, in the middle of its samples, above the centre.
int main(int, char** argv) {
  using namespace varnoth;
  PARAMETER_POOL pool(argv[1]);
  SCENE_ORBIT orbit;
  orbit.read(pool);
  double first = 0.0;
  double last = 0.0;
  orbit.core->GetRelativeSampleTime(0, first);
  orbit.core->GetRelativeSampleTime(orbit.core->GetSampleCount() - 1, last);
  double position[3] = {};
  orbit.core->GetPosition(0.51 * (first + last), position);
  const double radius = std::hypot(position[0], position[1], position[2]);
  std::printf("%.0f m\n", radius);
  return radius > 7.0e6 && radius < 7.1e6 ? 0 : 1;
}
