#include "driver/flat_earth_polynomial.hpp"
#include "driver/flat_earth_statistics.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using StatisticsTest = LoggedTest;

TEST(AverageLongitude, UnwrapsRelativeToTheFirst) {
  struct CASE {
    float corners[4], mean;
  };
  for (const auto& [c, mean] : std::initializer_list<CASE>{{{10, 20, 10, 20}, 15},
                                                           {{359.5, 0.5, 359.5, 0.5}, 0},
                                                           {{0.5, 359.5, 0.5, 358.5}, 359.75},
                                                           {{359, 1, 2, 0}, 0.5},
                                                           {{181, 1, 1, 1}, 46},
                                                           {{1, 181, 181, 181}, 136},
                                                           {{0, 0, 0, -1e-6F}, 0}}) {
    EXPECT_EQ(average_longitude(c[0], c[1], c[2], c[3]), mean) << c[0];
  }
}

/// Sums and a last sample with round results: R = 8e5 m, an incidence of 30
/// degrees.
struct SCENE_SUMS : GEOMETRY_STATE {
  explicit SCENE_SUMS(OBSERVATION_MODE::ID mode) {
    observation_mode.id = mode;
    height_conversion_factor = 22 * 50;
    eff_baseline = 22 * 201;
    delta_r = 22 * -3.5;
    master_first_rg_time = 15e5 / 299792458.0;
    master_last_rg_time = 17e5 / 299792458.0;
    incidence_angle_mid_range = 30;
    early_az_near_rg_latitude = early_az_far_rg_latitude = 10;
    late_az_near_rg_latitude = late_az_far_rg_latitude = 11;
    late_az_near_rg_longitude = 358;
    prf[MASTER] = 1000;
    range_sampling_frequency[MASTER] = 29979245.8;
    sweep.lambda_m = 0.05;
    sweep.incidence = 30;
    sweep.target[0] = 6e6;
    sweep.master_position[1] = 7e6;
    sweep.master_velocity[2] = -7e3;
  }
  SWEEP sweep;
};

TEST_F(StatisticsTest, TheReportedBaselineIsThePrediction) {
  SCENE_SUMS sums(OBSERVATION_MODE::DUAL_PASS);
  work_out_statistics(sums, sums.sweep);
  EXPECT_NE(TakeLog().find(" - simulation : -201.000000 \n - prediction : -200.000000 \n"),
            std::string::npos);
  EXPECT_NEAR(sums.eff_baseline, -200, 1e-11);  // rounding
  EXPECT_EQ(sums.delta_r, -3.5);
  EXPECT_EQ(sums.scene_center_latitude, 10.5F);
  EXPECT_EQ(sums.scene_center_longitude, 359.5F);
  EXPECT_FLOAT_EQ(sums.ssc_pixel_spacing_azimuth, 6.0F);
  EXPECT_FLOAT_EQ(sums.ssc_pixel_spacing_ground_range, 10.0F);
  SCENE_SUMS single(OBSERVATION_MODE::SINGLE_PASS);
  single.height_conversion_factor *= -1;
  work_out_statistics(single, single.sweep);
  EXPECT_NE(TakeLog().find(" - simulation : 201.000000 \n - prediction : 100.000000 \n"),
            std::string::npos);
}

TEST_F(StatisticsTest, APolynomialOfTheDegreeComesBackConstantTermFirst) {
  GEOMETRY_STATE state;
  SWEEP sweep;
  state.n_lines = 100;
  sweep.metres_per_cycle = 50;
  sweep.master_velocity[2] = 1e-9;
  for (int i = 0; i < SWEEP_SAMPLES; ++i) {
    const double x = sweep.spl.GetBase()[i] = 20 * i;
    for (const int k : {0, 1})
      sweep.phase[k].GetBase()[i] = 3 + 4 * k - 0.5 * (1 + k) * x + 0.01 * x * x;
  }
  fit_flat_earth_polynomials(state, sweep, 2);
  for (const int k : {0, 1}) {
    ASSERT_EQ(state.flat_phase_poly[k].GetLength(), 3);
    const double* const p = state.flat_phase_poly[k].GetBase();
    // The normal equations over 200 samples have a condition of 1e9.
    EXPECT_NEAR(p[0], 3 + 4 * k, 1e-7);
    EXPECT_NEAR(p[1], -0.5 * (1 + k), 1e-9);
    EXPECT_NEAR(p[2], 0.01, 1e-11);
  }
  EXPECT_DOUBLE_EQ(state.fringe_frequency_range, 1.25);     // 300 and 200 cycles over 200 samples
  EXPECT_DOUBLE_EQ(state.fringe_frequency_azimuth, -0.46);  // -46 at the middle over all lines
  EXPECT_STREQ(state.equator_crossing_direction.c_str(), "ascending");
  // Of degree zero it is the mean; those of x and its square are 100 and 14000.
  sweep.master_velocity[2] = 0.0;
  fit_flat_earth_polynomials(state, sweep, 0);
  EXPECT_DOUBLE_EQ(state.flat_phase_poly[1].GetBase()[0], 7 - 100 + 140);
  EXPECT_STREQ(state.equator_crossing_direction.c_str(), "descending");
  EXPECT_NE(TakeLog().find("[cycl] : 210.0000\n                                         [m] : "
                           "10500.0000\n"),
            std::string::npos);
}

}  // namespace
}  // namespace varnoth::test
