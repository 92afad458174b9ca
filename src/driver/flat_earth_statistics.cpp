#include "driver/flat_earth_statistics.hpp"

#include <cmath>

#include "foundation/constants.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr double SAMPLE_COUNT = 2 * SWEEP_SAMPLES;

/// Effective baseline (m) that matches the mean metres per cycle: sin(incidence) · R · (-lambda/2)
/// over the metres per cycle, at mid range; half of it in single pass.
double PredictedBaseline(const SCENE& scene, float mid_incidence, double metres_per_cycle) {
  const double mid_range_time =
      (scene.master_last_rg_time - scene.master_first_rg_time) * 0.5 + scene.master_first_rg_time;
  const double range = mid_range_time * SPEED_OF_LIGHT * 0.5;
  const double wavelength = SPEED_OF_LIGHT / scene.radar_frequency[MASTER];
  const double incidence = static_cast<double>(mid_incidence) * PI / 180.0;
  const double prediction = std::sin(incidence) * (range * (-wavelength * 0.5)) / metres_per_cycle;
  return scene.IsSinglePass() ? prediction * 0.5 : prediction;
}

/// Means over all samples.
struct MEANS {
  double metres_per_cycle = 0.0;
  double eff_baseline = 0.0;  ///< its sign is opposite to that of metres per cycle
  double delta_r = 0.0;
};

MEANS MeansOf(const SWEEP& sweep) {
  MEANS sums;
  for (const auto& line : sweep.samples) {
    for (const SAMPLE_GEOMETRY& sample : line) {
      sums.eff_baseline += sample.effective_baseline;
      sums.delta_r += sample.range_difference;
      // A sample without a height conversion discards the sum so far, so that the mean shows it.
      const bool tells_none = sample.metres_per_cycle == NO_HEIGHT_CONVERSION;
      sums.metres_per_cycle = (tells_none ? 0.0 : sums.metres_per_cycle) + sample.metres_per_cycle;
    }
  }
  MEANS means{sums.metres_per_cycle / SAMPLE_COUNT, sums.eff_baseline / SAMPLE_COUNT,
              sums.delta_r / SAMPLE_COUNT};
  // The sweep takes its baselines from roots, which have no sign.
  if (means.metres_per_cycle > 0.0) means.eff_baseline = -means.eff_baseline;
  return means;
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

STATISTICS work_out_statistics(const SCENE& scene, const SWEEP& sweep, const CORNERS& corners) {
  STATISTICS statistics;
  statistics.scene_center_latitude =
      0.25F * (((corners.early_az_near_rg_latitude + corners.early_az_far_rg_latitude) +
                corners.late_az_near_rg_latitude) +
               corners.late_az_far_rg_latitude);
  statistics.scene_center_longitude =
      average_longitude(corners.early_az_near_rg_longitude, corners.early_az_far_rg_longitude,
                        corners.late_az_near_rg_longitude, corners.late_az_far_rg_longitude);
  const MEANS means = MeansOf(sweep);
  statistics.height_conversion_factor = means.metres_per_cycle;
  statistics.delta_r = means.delta_r;
  statistics.eff_baseline =
      PredictedBaseline(scene, corners.incidence_angle_mid_range, means.metres_per_cycle);
  GlobalLog.printf_line(INFO, "Deviation in effective baseline with respect to theory");
  GlobalLog.printf_line(INFO, " - simulation : %f ", means.eff_baseline);
  GlobalLog.printf_line(INFO, " - prediction : %f ", statistics.eff_baseline);
  GlobalLog.printf_line(INFO,
                        "For robustness, the predictions based on the heigt conversion factor");
  GlobalLog.printf_line(INFO, "will be annotated as effective baseline in pool");

  const MASTER_LINE& last_line = sweep.lines[LAST_LINE];
  const GROUND_POINT& last = sweep.samples[LAST_LINE][FAR_SAMPLE].target;
  statistics.ssc_pixel_spacing_azimuth = static_cast<float>(
      (Length(last.position) * Length(last_line.velocity) / Length(last_line.position)) /
      scene.prf[MASTER]);
  LogValue("Master azimuth pixel spacing             [m]",
           static_cast<double>(statistics.ssc_pixel_spacing_azimuth));
  statistics.ssc_pixel_spacing_ground_range =
      static_cast<float>(SPEED_OF_LIGHT / (2.0 * scene.range_sampling_frequency[MASTER] *
                                           std::sin(last.incidence * PI / 180.0)));
  LogValue("Master range   pixel spacing             [m]",
           static_cast<double>(statistics.ssc_pixel_spacing_ground_range));
  LogValue("Average height conversion factor    [m/cycl]", statistics.height_conversion_factor);
  LogValue("Average Eff. Baseline                    [m]", statistics.eff_baseline);
  LogValue("Average delta R\t                    [m]", statistics.delta_r);
  LogValue("Incidence angle near range             [deg]",
           static_cast<double>(corners.incidence_angle_near_range));
  LogValue("Incidence angle far range              [deg]",
           static_cast<double>(corners.incidence_angle_far_range));
  return statistics;
}

}  // namespace varnoth
