#include "driver/flat_earth_statistics.hpp"

#include <cmath>

#include "foundation/constants.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr double SAMPLE_COUNT = 22.0;

/// Effective baseline (m) that the mean metres per cycle belongs to: sin(incidence) · R ·
/// (-lambda/2) over the metres per cycle, at mid range.
double PredictedBaseline(const GEOMETRY_STATE& state, const SWEEP& sweep) {
  const double mid_range_time =
      (state.master_last_rg_time - state.master_first_rg_time) * 0.5 + state.master_first_rg_time;
  const double range = mid_range_time * SPEED_OF_LIGHT * 0.5;
  const double incidence = static_cast<double>(state.incidence_angle_mid_range) * PI / 180.0;
  const double prediction =
      std::sin(incidence) * (range * (-sweep.lambda_m * 0.5)) / state.height_conversion_factor;
  return state.IsSinglePass() ? prediction * 0.5 : prediction;
}

void LogValue(const char* name, double value) {
  GlobalLog.printf_line(INFO, "%s : %3.2f", name, value);
}

}  // namespace

float average_longitude(float first, float second, float third, float fourth) {
  float sum = first;
  for (const float x : {second, third, fourth}) {
    const float d = first - x;
    if (-180.0 > d) {
      sum = static_cast<float>(sum + (x - 360.0));
    } else if (d > 180.0) {
      sum = static_cast<float>(sum + (x + 360.0));
    } else {
      sum += x;
    }
  }
  auto mean = static_cast<float>(0.25 * sum);
  if (mean < 0.0) mean = static_cast<float>(mean + 360.0);
  if (mean >= 360.0) mean = static_cast<float>(mean - 360.0);  // a tiny negative one rounds to 360
  return mean;
}

void work_out_statistics(GEOMETRY_STATE& state, const SWEEP& sweep) {
  state.scene_center_latitude =
      0.25F * (((state.early_az_near_rg_latitude + state.early_az_far_rg_latitude) +
                state.late_az_near_rg_latitude) +
               state.late_az_far_rg_latitude);
  state.scene_center_longitude =
      average_longitude(state.early_az_near_rg_longitude, state.early_az_far_rg_longitude,
                        state.late_az_near_rg_longitude, state.late_az_far_rg_longitude);
  state.height_conversion_factor /= SAMPLE_COUNT;
  state.delta_r /= SAMPLE_COUNT;
  state.eff_baseline /= SAMPLE_COUNT;
  // The roots of the sweep have no sign; the baseline has the one that metres per cycle have not.
  if (state.height_conversion_factor > 0.0) state.eff_baseline = -state.eff_baseline;
  const double prediction = PredictedBaseline(state, sweep);
  GlobalLog.printf_line(INFO, "Deviation in effective baseline with respect to theory");
  GlobalLog.printf_line(INFO, " - simulation : %f ", state.eff_baseline);
  GlobalLog.printf_line(INFO, " - prediction : %f ", prediction);
  GlobalLog.printf_line(INFO,
                        "For robustness, the predictions based on the heigt conversion factor");
  GlobalLog.printf_line(INFO, "will be annotated as effective baseline in pool");
  state.eff_baseline = prediction;

  state.ssc_pixel_spacing_azimuth = static_cast<float>(
      (Length(sweep.target) * Length(sweep.master_velocity) / Length(sweep.master_position)) /
      state.prf[MASTER]);
  LogValue("Master azimuth pixel spacing             [m]",
           static_cast<double>(state.ssc_pixel_spacing_azimuth));
  state.ssc_pixel_spacing_ground_range =
      static_cast<float>(SPEED_OF_LIGHT / (2.0 * state.range_sampling_frequency[MASTER] *
                                           std::sin(sweep.incidence * PI / 180.0)));
  LogValue("Master range   pixel spacing             [m]",
           static_cast<double>(state.ssc_pixel_spacing_ground_range));
  LogValue("Average height conversion factor    [m/cycl]", state.height_conversion_factor);
  LogValue("Average Eff. Baseline                    [m]", state.eff_baseline);
  LogValue("Average delta R\t                    [m]", state.delta_r);
  LogValue("Incidence angle near range             [deg]",
           static_cast<double>(state.incidence_angle_near_range));
  LogValue("Incidence angle far range              [deg]",
           static_cast<double>(state.incidence_angle_far_range));
}

}  // namespace varnoth
