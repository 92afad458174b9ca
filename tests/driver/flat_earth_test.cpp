#include "driver/flat_earth_sweep.hpp"
#include "driver/nine_point_grids.hpp"
#include "driver/scene_parameters.hpp"
#include "foundation/constants.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

/// Two circles some hundred metres apart, seen at about 33 degrees of incidence.
struct PAIR : GEOMETRY_STATE {
  explicit PAIR(OBSERVATION_MODE::ID mode = OBSERVATION_MODE::DUAL_PASS,
                const CIRCLE& slave = {.radius = 7.0001e6, .node = 0.40001}) {
    Follow(master_orbit, CIRCLE());
    Follow(slave_orbit, slave);
    observation_mode.id = mode;
    requator = 6378137.0;
    rpole = 6356752.0;
    sensor_look_direction = 1.0;
    n_lines = 2001;
    n_samples = 4001;
    for (const SCENE scene : {MASTER, SLAVE}) {
      prf[scene] = 1e3;
      range_sampling_frequency[scene] = 1e8;
      radar_frequency[scene] = 5.4e9;
      az_bandwidth[scene] = 1e3;
    }
    // Nothing of a sweep on the master's grid may depend on them.
    prf[SLAVE] = 3e3;
    range_sampling_frequency[SLAVE] = 7e8;
    master_first_rg_time = 5e-3;
  }
  void Sweep() {
    BISTATIC_B bistatic;
    work_out_end_times(*this);
    sweep_flat_earth(*this, sweep, work, bistatic);
  }
  double Phase(int line, int i) const { return sweep.phase[line].GetBase()[i]; }

  SWEEP sweep;
  GEOLOCATION_WORK work{};
};

// The slave stands where its plane has the target's angle.
TEST_F(LoggedTest, TheLastSampleIsTheTriangleOfItsPoints) {
  const CIRCLE slave{.radius = 7.0001e6, .node = 0.40001};
  PAIR pair(OBSERVATION_MODE::DUAL_PASS, slave);
  pair.radar_frequency[SLAVE] = 5.5e9;
  pair.Sweep();
  const double* const p = pair.sweep.target;
  const TRIPLE u = slave(-slave.phase / slave.rate);
  const TRIPLE w = slave((M_PI_2 - slave.phase) / slave.rate);
  const double angle = std::atan2(DotProduct(p, w.data()), DotProduct(p, u.data()));
  const TRIPLE t = slave((angle - slave.phase) / slave.rate);
  const double rm = (5e-3 + 4e3 / 1e8) * SPEED_OF_LIGHT / 2;
  const double rs = std::hypot(t[0] - p[0], t[1] - p[1], t[2] - p[2]);
  // The stop criteria of the two searches, 1e-9 m and 1e-9 s, and rounding.
  EXPECT_NEAR(pair.master_range_distance[LAST_LINE].GetBase()[10], rm, 1e-8);
  EXPECT_NEAR(pair.slave_range_distance[LAST_LINE].GetBase()[10], rs, 1e-8);
  EXPECT_NEAR(pair.Phase(LAST_LINE, 10), 2 * (rm * 5.4e9 - rs * 5.5e9) / SPEED_OF_LIGHT, 1e-6);
  EXPECT_NEAR(pair.sweep.spl.GetBase()[10], 4000, 1e-9);  // rounding
}

// The echo of one's own pulse comes by a detour of R v^2 / c^2, with v^2 = V.V + A.D the circle's.
TEST_F(LoggedTest, TheBistaticPathKnowsThatTheSatelliteMoves) {
  PAIR pair(OBSERVATION_MODE::SINGLE_PASS, {});
  pair.Sweep();
  const double v = CIRCLE{}.rate / SPEED_OF_LIGHT;
  const double wanted = -pair.master_range_distance[1].GetBase()[10] * v * v *
                        DotProduct(pair.sweep.master_position, pair.sweep.target) /
                        pair.sweep.lambda_s;
  EXPECT_NEAR(pair.Phase(1, 10), wanted, 1e-6);
}

TEST_F(LoggedTest, OneLineGivesEqualHalvesAndEqualRows) {
  PAIR pair(OBSERVATION_MODE::DUAL_PASS, {.radius = 7.0001e6});
  pair.n_lines = 1;
  pair.n_samples = 2;
  pair.Sweep();
  for (int i = 0; i < SWEEP_SAMPLES; ++i) EXPECT_EQ(pair.Phase(0, i), pair.Phase(1, i));
  print_nine_point_grids(pair, pair.work);
  const std::string log = TakeLog();
  EXPECT_NE(log.find("|       |(    0)|(    0)|(    1)|\n"), std::string::npos);
  const std::string row = "|     0 |100.00 |100.00 |100.00 |\n";  // one is above the other
  EXPECT_NE(log.find(row + row + row), std::string::npos);
}

}  // namespace
}  // namespace varnoth::test
