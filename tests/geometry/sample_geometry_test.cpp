#include "geometry/sample_geometry.hpp"

#include <cstring>
#include <thread>

#include "foundation/constants.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

constexpr double RANGE_TIME = 0.0056, FREQUENCY = 9.65e9;

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
  PAIR_CONSTANTS pair{&master, &slave, 1, 6356752, 6378137, 5.4e9, FREQUENCY, 3, false, 1500};
  BISTATIC_SEARCH search;
};

TEST_F(SampleGeometryTest, BaselinesHaveTheirSignsAndTheHeightsThatTheyResolve) {
  const struct {
    const char* name;
    double up, turn;  ///< the latter moves the slave's zero Doppler ahead
  } SLAVES[] = {{"above", 200, 0}, {"below", -200, 0}, {"turned to the target", 200, 1e-5}};
  for (const auto& [name, up, turn] : SLAVES) {
    for (const auto& [side, ways] : {std::pair{-1, 2}, {1, 2}, {-1, 1}, {1, 1}}) {
      SCOPED_TRACE(testing::Message() << name << ", side " << side << ", ways " << ways);
      pair.look_direction = side;
      pair.is_single_pass = ways == 1;
      const auto s = Sample({.radius = 7e6 + up, .inclination = 1.7 - turn * side});
      EXPECT_NEAR(s.master_range, SPEED_OF_LIGHT * RANGE_TIME / 2, 1e-8);  // the stop criterion
      const double parts[] = {s.perpendicular, s.parallel, s.along_track};
      EXPECT_NEAR(s.baseline, Length(parts), 1e-8);  // the rounding of 7e6 m
      EXPECT_TRUE(s.perpendicular * up > 0 && s.parallel * up < 0);
      EXPECT_TRUE(turn == 0 || s.along_track > 1) << s.along_track;
      // At one range 100 m of height are 100 m / sin(incidence) across the line of sight.
      const double across = std::sin(s.target.incidence * PI / 180) * s.master_range;
      const double wanted = -SPEED_OF_LIGHT / FREQUENCY / ways * across / s.perpendicular;
      EXPECT_NEAR(s.metres_per_cycle / wanted, 1, 1e-3);  // the baseline's part of the range
    }
  }
  EXPECT_EQ(Sample(CIRCLE(), 0.001).target.status, SOLVER_STATUS::NO_INTERSECTION);
}

TEST_F(SampleGeometryTest, ANearPointLeadsToTheEchoAtAnotherHeight) {
  const MASTER_LINE line = LineAt(master, 0);
  GEOLOCATION_WORK work;
  double found[3] = {};
  for (const double side : {-1.0, 1.0}) {
    pair.look_direction = side;
    const GROUND_POINT near = LocateEcho(EchoOf(pair, line, RANGE_TIME, 300), work);
    for (const double height : {-1000.0, 300.0, 400.0, 9000.0}) {
      const ECHO echo = EchoOf(pair, line, RANGE_TIME, height);
      ASSERT_TRUE(PlaceNear(echo, near.position, found)) << side << " " << height;
      EXPECT_LT(Distance(found, LocateEcho(echo, work).position), 1e-7) << side << " " << height;
    }
    // The satellite is 630 km high, and an echo of 840 km does not come from so deep.
    EXPECT_FALSE(PlaceNear(EchoOf(pair, line, RANGE_TIME, -1.5e6), near.position, found));
  }
}

TEST_F(SampleGeometryTest, FourThreadsGetTheBitsOfOneAndLogNothing) {
  Follow(slave, CIRCLE{.radius = 7.0002e6});
  pair.is_single_pass = true;
  std::vector<SAMPLE_GEOMETRY> samples(500);
  const auto run = [&](std::size_t first) {
    BISTATIC_SEARCH own;
    for (int i = 0; i < 100; ++i) {
      samples[first++] = SampleGeometry(pair, LineAt(master, i), RANGE_TIME + 1e-6 * i, i, own);
    }
  };
  run(0);
  std::vector<std::thread> threads;
  for (std::size_t first = 100; first < 500; first += 100) threads.emplace_back(run, first);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::memcmp(&samples[0], &samples[100], 400 * sizeof samples[0]), 0);
  EXPECT_EQ(TakeLog(), "");
}

}  // namespace
}  // namespace varnoth::test
