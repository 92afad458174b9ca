#include "geometry/sample_geometry.hpp"

#include <cstring>
#include <thread>

#include "foundation/constants.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

constexpr double RANGE_TIME = 0.0056;

class SampleGeometryTest : public LoggedTest {
 protected:
  SampleGeometryTest() {
    Follow(master, CIRCLE());
    master.time_offset = slave.time_offset = 12.5;
  }
  SAMPLE_GEOMETRY Sample(const CIRCLE& circle, double range_time = RANGE_TIME) {
    Follow(slave, circle);
    return SampleGeometry(pair, LineAt(master, 0), range_time, 300, search);
  }
  SCENE_ORBIT master, slave;
  PAIR_CONSTANTS pair{&master, &slave, 1, 6356752, 6378137, 5.4e9, 9.65e9, 3, false, 1500};
  BISTATIC_SEARCH search;
};

TEST_F(SampleGeometryTest, ObeysItsLawsAndSignsOnBothSidesInDualAndSinglePass) {
  for (int i = 0; i < 12; ++i) {
    const double side = pair.look_direction = i < 6 ? -1 : 1;
    pair.is_single_pass = i % 2 == 1;
    // Above, below, and turned towards the target, which moves the slave's zero Doppler ahead.
    const bool is_turned = i % 3 == 2;
    const double up = i % 3 == 1 ? -200 : 200;
    const CIRCLE circle{.radius = 7e6 + up, .inclination = is_turned ? 1.7 - 1e-5 * side : 1.7};
    const SAMPLE_GEOMETRY s = Sample(circle);
    const double *const target = s.target.position, *const slave_position = s.slave_position;
    const double slave_range = Distance(slave_position, target);
    double d[3];
    Subtract(d, slave_position, target);
    EXPECT_NEAR(s.master_range, SPEED_OF_LIGHT * RANGE_TIME / 2, 1e-8);  // the stop criterion
    // The roundings of 7e6 m, times 7.5e3 m/s, and times the baseline of 200 m.
    EXPECT_NEAR(DotProduct(d, circle(s.slave_time + 12.5, 1).data()), 0, 1e-4);
    const double parts[] = {s.perpendicular, s.parallel, s.along_track};
    EXPECT_NEAR(s.baseline * s.baseline, DotProduct(parts, parts), 1e-5);
    EXPECT_TRUE(s.perpendicular * up > 0 && s.parallel * up < 0) << i;
    EXPECT_TRUE(!is_turned || s.along_track > 1) << s.along_track;
    EXPECT_EQ(s.metres_per_cycle, -100 / s.phase_difference);
    if (pair.is_single_pass) {
      // The way over both legs but for the half square of 42 m in the delay over the range.
      EXPECT_NEAR(SPEED_OF_LIGHT * s.delay, s.master_range + slave_range, 0.01);
      continue;
    }
    const auto phase = [&](const double* point) {
      return 2 *
             (Distance(LineAt(master, 0).position, point) * 5.4e9 -
              Distance(slave_position, point) * 9.65e9) /
             SPEED_OF_LIGHT;
    };
    EXPECT_NEAR(s.phase, phase(target), 1e-7);  // roundings of 5e7 cycles
    EXPECT_NEAR(s.phase_difference, phase(s.higher.position) - phase(target), 1e-7);
  }
  EXPECT_EQ(Sample(CIRCLE(), 0.001).target.status, SOLVER_STATUS::NO_INTERSECTION);
}

TEST_F(SampleGeometryTest, FourThreadsGetTheBitsOfOneAndLogNothing) {
  Follow(slave, CIRCLE{.radius = 7.0002e6});
  const auto run = [&](SAMPLE_GEOMETRY* samples) {
    BISTATIC_SEARCH own;
    for (int i = 0; i < 100; ++i) {
      samples[i] = SampleGeometry(pair, LineAt(master, i), RANGE_TIME + 1e-6 * i, i, own);
    }
  };
  for (const bool single : {false, true}) {
    pair.is_single_pass = single;
    std::vector<SAMPLE_GEOMETRY> samples(500);
    run(&samples[0]);
    std::vector<std::jthread> threads;
    for (std::size_t k = 100; k < 500; k += 100) threads.emplace_back(run, &samples[k]);
    threads.clear();  // waits for them
    EXPECT_EQ(std::memcmp(&samples[0], &samples[100], 400 * sizeof samples[0]), 0);
  }
  EXPECT_EQ(TakeLog(), "");
}

}  // namespace
}  // namespace varnoth::test
