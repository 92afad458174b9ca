#include "geometry/bistatic_b.hpp"

#include "foundation/constants.hpp"
#include "geometry/slave_time.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

// A circle is nearest to a point where the two have the same angle in the circle's plane.
TEST_F(LoggedTest, AnyStartLeadsToTheAngleOfTheTarget) {
  const CIRCLE circle{.inclination = M_PI_2, .node = 0};  // in the plane of x and z
  SCENE_ORBIT orbit;
  Follow(orbit, circle);
  orbit.time_offset = 12.5;
  for (const double angle : {0.3, 0.6, 1.1}) {
    const double target[3] = {6.3e6 * std::cos(angle), 6e5, 6.3e6 * std::sin(angle)};
    for (const double start : {-100.0, 0.0, 300.0}) {
      double range = 0.0;
      // The stop criterion in seconds; the range does not change to the first order.
      EXPECT_NEAR(CalcSlaveTime(orbit, target, range, start),
                  (angle - circle.phase) / circle.rate - 12.5, 1e-9);
      EXPECT_NEAR(range, std::hypot(7e5, 6e5), 1e-8);
    }
  }
}

TEST_F(LoggedTest, TheSearchEndsByCorrectionResidualOrCount) {
  SCENE_ORBIT orbit;
  Follow(orbit, [](double t, int d) { return TRIPLE{d == 0 ? 7e3 * t : d == 1 ? 7e3 : 0, 0, 0}; });
  const double target[3] = {};
  double range = -1.0;
  EXPECT_EQ(CalcSlaveTime(orbit, target, range, 5e-10), 0.0);
  EXPECT_DOUBLE_EQ(range, 3.5e-6);  // the correction itself was small enough
  EXPECT_EQ(CalcSlaveTime(orbit, target, range, 1e-17), 1e-17);  // no correction
  // An orbit that moves without getting anywhere.
  Follow(orbit, [](double, int derivative) { return TRIPLE{derivative == 2 ? 0.0 : 1.0, 0, 0}; });
  EXPECT_EQ(CalcSlaveTime(orbit, target, range, 30.0), -70.0);
  EXPECT_EQ(range, 1.0);
  EXPECT_TRUE(TakeLog().starts_with("iterations count 100 exceeded in CalcSlaveTime( t=-70, "));
}

constexpr double C = SPEED_OF_LIGHT, HEIGHT = 7e5, SPEED = 7.5e3;
constexpr double TARGET[3] = {0, 0, 6.3e6};

/// A straight pass along x, over the target at t = 100 s and aside of it.
TRIPLE Pass(double t, int derivative) {
  if (derivative == 0) return {SPEED * (t - 100), 4e5, TARGET[2] + HEIGHT};
  return {derivative == 1 ? SPEED : 0, 0, 0};
}
const double DISTANCE = std::hypot(HEIGHT, 4e5);

class BistaticTest : public LoggedTest {
 protected:
  struct RESULT {
    double velocity_squared = 0, closest_time = 0, delay = 0;
  };
  BistaticTest() { Follow(orbit, Pass); }
  RESULT Evaluate(BISTATIC_B&& solver, double centre, double zenith_delay = 0,
                  VECTOR<double>* residuals = nullptr, bool shift_time = false) {
    RESULT r;
    solver.Evaluate(r.velocity_squared, r.closest_time, r.delay, TARGET, orbit, centre, 0.5,
                    zenith_delay, orbit, residuals, shift_time);
    return r;
  }
  RESULT Monostatic(BISTATIC_B&& solver, double time, double zenith_delay = 0) {
    RESULT r;
    solver.EvaluateMonostatic(r.velocity_squared, r.closest_time, r.delay, TARGET, orbit, time,
                              zenith_delay);
    return r;
  }
  SCENE_ORBIT orbit;
};

// Sender and receiver stand symmetrically about the nearest point, half a delay before and after.
TEST_F(BistaticTest, AStraightPassHasItsClosedForm) {
  const RESULT r = Evaluate(BISTATIC_B(), 100.1);
  const double delay = 2 * DISTANCE / std::sqrt(C * C - SPEED * SPEED);
  // The square is a parabola but for a cubic term of 2 v^2 / (c^2 delay) = 2.3e-7 per second.
  EXPECT_NEAR(r.delay, delay, 1e-15);
  EXPECT_NEAR(r.closest_time, 100 + delay / 2, 3e-8);
  EXPECT_NEAR(r.velocity_squared / (SPEED * SPEED), 1, 1e-6);
  EXPECT_NEAR(Evaluate(BISTATIC_B(), 100.1, 0, nullptr, true).closest_time, 100, 3e-8);
  const RESULT m = Monostatic(BISTATIC_B(), 90);
  EXPECT_NEAR(m.delay, 2 * DISTANCE / C, 1e-17);  // rounding
  EXPECT_NEAR(m.closest_time, 100, 1e-9);         // the search's stop criterion
  EXPECT_NEAR(m.velocity_squared, SPEED * SPEED, 1e-7);
}

// The height over the target stays, and so does the slant factor: the delay slows the light down.
TEST_F(BistaticTest, AZenithDelayIsASlowerLightOnALevelPass) {
  constexpr double ZENITH_DELAY = 8e-9;
  const double slowness = 1 / C + ZENITH_DELAY / HEIGHT;
  EXPECT_NEAR(Evaluate(BISTATIC_B(), 100, ZENITH_DELAY).delay,
              Evaluate(BISTATIC_B(1 / slowness, slowness, 0, 3, 1e-15), 100).delay, 1e-17);
  EXPECT_NEAR(Monostatic(BISTATIC_B(), 100, ZENITH_DELAY).delay, 2 * DISTANCE * slowness, 1e-17);
  // Another origin of the time axis moves the result, but for the search's stop criterion.
  EXPECT_NEAR(Monostatic(BISTATIC_B(C, 1 / C, 2.5, 3, 1e-15), 90).closest_time, 97.5, 1e-9);
}

TEST_F(BistaticTest, ResidualsAreAWarmStart) {
  const std::string head = "BISTATIC_B: histogram of iterations:\n";
  VECTOR<double> residuals(5, 2);
  Evaluate(BISTATIC_B(), 100, 0, &residuals);
  EXPECT_NE(TakeLog(), head + "1 iterations: 3 occurrences\n");  // two were none
  ASSERT_TRUE(residuals.GetRange() == RANGE<int>(0, 3));
  // The sender is v delay aside: its way is longer by the half square of that over the distance.
  EXPECT_NEAR(residuals.GetBase()[1], 2 * SPEED * SPEED * DISTANCE / (C * C * C), 1e-17);
  Evaluate(BISTATIC_B(), 100, 0, &residuals);
  EXPECT_EQ(TakeLog(), head + "1 iterations: 3 occurrences\n");
  Evaluate(BISTATIC_B(C, 1 / C, 0, 3, 0.0), 100);
  EXPECT_EQ(TakeLog(), head + "101 iterations: 3 occurrences\n");
}

// Nearest is where both are equally far from the point below the line.
TEST_F(BistaticTest, ASenderAheadOnTheSameLineIsMetHalfWay) {
  constexpr double LEAD = 0.12;  // s
  SCENE_ORBIT sender;
  Follow(sender, [](double t, int derivative) { return Pass(t + LEAD, derivative); });
  double delay = 0;
  for (int i = 0; i < 9; ++i) delay = 2 * std::hypot(DISTANCE, SPEED * (LEAD - delay) / 2) / C;
  RESULT r;
  BISTATIC_B().Evaluate(r.velocity_squared, r.closest_time, r.delay, TARGET, orbit, 100, 0.5, 0,
                        sender, nullptr, false);
  EXPECT_NEAR(r.delay, delay, 1e-15);
  EXPECT_NEAR(r.closest_time, 100 + (delay - LEAD) / 2, 3e-8);
}

}  // namespace
}  // namespace varnoth::test
