#include "geometry/bistatic_b.hpp"

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "geometry/slave_time.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

TEST_F(LoggedTest, TheSearchEndsByCorrectionResidualOrCountWhichIsAWarning) {
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
  EXPECT_EQ(TakeLines(),
            "WARN  iterations count 100 exceeded in CalcSlaveTime( t=-70, Residuals: dt =-1, "
            "v_sat.r =1)\n");
}

constexpr double C = SPEED_OF_LIGHT, HEIGHT = 7e5, SPEED = 7.5e3;
constexpr double TARGET[3] = {0, 0, 6.3e6};
const double DISTANCE = std::hypot(HEIGHT, 4e5);

/// A straight pass along x, over the target at t = 100 s and beside it; the caller's clock is 2.5 s
/// slow.
class BistaticTest : public LoggedTest {
 protected:
  BistaticTest() {
    Follow(orbit, [](double t, int derivative) -> TRIPLE {
      if (derivative == 0) return {SPEED * (t - 100), 4e5, TARGET[2] + HEIGHT};
      return {derivative == 1 ? SPEED : 0, 0, 0};
    });
  }
  static BISTATIC_B Solver(double accuracy = 1e-15) { return {C, 1 / C, 2.5, 3, accuracy}; }
  /// Sets velocity_squared, closest_time and delay.
  void Evaluate(BISTATIC_B&& solver, double zenith_delay, VECTOR<double>* residuals = nullptr,
                bool shift_time = false) {
    solver.Evaluate(velocity_squared, closest_time, delay, TARGET, orbit, 97.5, 0.5, zenith_delay,
                    orbit, residuals, shift_time);
  }
  SCENE_ORBIT orbit;
  double velocity_squared = 0, closest_time = 0, delay = 0;
};

// Sender and receiver stand symmetrically about the nearest point, half a delay before and after.
// The height over the target stays, and so does the slant factor: a zenith delay slows light down.
TEST_F(BistaticTest, AStraightPassHasItsClosedForm) {
  for (const double zenith_delay : {0.0, 8e-9}) {
    const double slowness = 1 / C + zenith_delay / HEIGHT,
                 squared_ratio = std::pow(C * slowness, 2);
    const double wanted = 2 * DISTANCE / std::sqrt(1 / (slowness * slowness) - SPEED * SPEED);
    Evaluate(Solver(), zenith_delay);
    // The square is a parabola but for a cubic term of 2 v^2 / (c^2 delay) = 2.3e-7 per second.
    EXPECT_NEAR(delay, wanted, 1e-15);
    EXPECT_NEAR(closest_time, 97.5 + wanted / 2, 3e-8);
    EXPECT_NEAR(velocity_squared / (SPEED * SPEED), squared_ratio, 1e-6);
    Evaluate(Solver(), zenith_delay, nullptr, true);
    EXPECT_NEAR(closest_time, 97.5, 3e-8);
    Solver().EvaluateMonostatic(velocity_squared, closest_time, delay, TARGET, orbit, 90,
                                zenith_delay);
    EXPECT_NEAR(delay, 2 * DISTANCE * slowness, 1e-17);  // rounding
    EXPECT_NEAR(closest_time, 97.5, 1e-9);               // the search's stop criterion
    EXPECT_NEAR(velocity_squared, SPEED * SPEED, 1e-7);
  }
}

TEST_F(BistaticTest, ResidualsAreAWarmStartAndTheStopIsRelative) {
  const std::string head = "BISTATIC_B: histogram of iterations:\n";
  VECTOR<double> residuals(5, 2);
  Evaluate(Solver(), 0, &residuals);
  EXPECT_NE(TakeLog(), head + "1 iterations: 3 occurrences\n");  // two residuals for three samples
  ASSERT_TRUE(residuals.GetRange() == RANGE<int>(0, 3));
  // The sender is v delay aside: its way is longer by the half square of that over the distance.
  EXPECT_NEAR(residuals.GetBase()[1], 2 * SPEED * SPEED * DISTANCE / (C * C * C), 1e-17);
  Evaluate(Solver(), 0, &residuals);
  EXPECT_EQ(TakeLog(), head + "1 iterations: 3 occurrences\n");
  // That is 3.4e-12 s, but 6e-10 of the delay.
  Evaluate(Solver(1e-10), 0);
  EXPECT_EQ(TakeLog(), head + "2 iterations: 3 occurrences\n");
  Evaluate(Solver(0), 0);
  EXPECT_EQ(TakeLines(), "TRACE " + head + "TRACE 101 iterations: 3 occurrences\n");
  EXPECT_THROW(BISTATIC_SEARCH(C, 1 / C, 0, 2, 0), ERROR_ARGUMENT);
  EXPECT_EQ(TakeLines(), "ALARM BISTATIC_B: a parabola needs three samples or more, not 2\n");
}

}  // namespace
}  // namespace varnoth::test
