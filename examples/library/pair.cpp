#include <cstdio>

#include "geometry/sample_geometry.hpp"
#include "pass.hpp"

using namespace varnoth;

void Load(SCENE_ORBIT& orbit, const PASS& pass) {
  orbit.SetSamples("localhermite_4_4", pass.times, pass.positions, pass.velocities);
}

int main() {
  GlobalLog.configure("", "pair", ALARM, ALARM);
  SCENE_ORBIT master, slave;
  Load(master, FlyPass(7.071e6, 0.3));
  Load(slave, FlyPass(7.07104e6, 0.30002));  // 40 m higher, a little further east
  const PAIR_CONSTANTS pair{.master_orbit = &master,
                            .slave_orbit = &slave,
                            .look_direction = 1,
                            .rpole = 6356752.314245,
                            .requator = 6378137,
                            .master_frequency = 5.405e9,
                            .slave_frequency = 5.405e9,
                            .slave_start = 36060,
                            .is_single_pass = false,
                            .slave_bandwidth = 0};
  BISTATIC_SEARCH search;
  const SAMPLE_GEOMETRY s = SampleGeometry(pair, LineAt(master, 36060), 5.6e-3, 250, search);
  if (s.target.status != SOLVER_STATUS::FOUND) throw StatusText(s.target.status);
  std::printf("perpendicular %.4f m, parallel %.4f m, along track %.4f m\n", s.perpendicular,
              s.parallel, s.along_track);
  std::printf("%.3f cycles, %.4f m per cycle\n", s.phase, s.metres_per_cycle);
}
