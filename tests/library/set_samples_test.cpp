#include "orbit/circular_orbit.hpp"
#include "orbit/scene_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {

TEST_F(LoggedTest, SamplesFromMemoryGiveTheCurveInACopyTooAndRefusalsKeepTheFormer) {
  std::vector<double> times;
  std::vector<COORDINATES> positions, velocities;
  for (int k = 0; k < 12; ++k) {
    times.push_back(36000 + 60 * k);
    positions.push_back(CIRCLE()(60 * k));
    velocities.push_back(CIRCLE()(60 * k, 1));
  }
  const std::span t(times);
  for (const char* interpolation : {"everett_8", "hermite", "localhermite_4_4"}) {
    SCENE_ORBIT orbit, copy;
    orbit.SetSamples(interpolation, t, positions, velocities);
    EXPECT_THROW(orbit.SetSamples("hermite", t, positions), ERROR_ARGUMENT);
    EXPECT_NE(TakeLines().find("ALARM ORBIT: "), std::string::npos);
    EXPECT_THROW(orbit.SetSamples("spline", t.subspan(1), positions), ERROR_ARGUMENT);
    EXPECT_THROW(orbit.SetSamples("polynom", t.first(1), {&positions[0], 1}), ERROR_ARGUMENT);
    for (const double wrong : {36600.0, double{INFINITY}, double{NAN}}) {
      times[11] = wrong;
      EXPECT_THROW(orbit.SetSamples("spline", t, positions), ERROR_ARGUMENT) << wrong;
    }
    times[11] = 36660;
    for (COORDINATES* part : {&positions[11], &velocities[11]}) {
      const double z = std::exchange((*part)[2], NAN);
      EXPECT_THROW(orbit.SetSamples("hermite", t, positions, velocities), ERROR_ARGUMENT);
      (*part)[2] = z;
    }
    SATELLITE_STATE state;
    copy = orbit;
    orbit.core.reset();
    GetState(copy, 36354.5, state);
    const double* const parts[] = {state.position, state.velocity, state.acceleration};
    for (int i = 0; i < 9; ++i) {  // to the roundings of 7e6 m; the methods are closer
      EXPECT_NEAR(parts[i / 3][i % 3], CIRCLE()(354.5, i / 3)[i % 3], 1e-7) << interpolation << i;
    }
    EXPECT_EQ(copy.core->GetCoordinateCount(), 3);
  }
}

}  // namespace varnoth::test
