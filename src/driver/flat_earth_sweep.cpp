#include "driver/flat_earth_sweep.hpp"

#include <algorithm>
#include <cmath>

#include "driver/scene_geometry.hpp"
#include "log/log.hpp"
#include "tables/log_table.hpp"

namespace varnoth {

namespace {

/// Works out a sample of the sweep and logs its lines.
SAMPLE_GEOMETRY SweepSample(const SCENE& scene, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                            double range_time, BISTATIC_B& bistatic) {
  SAMPLE_GEOMETRY sample;
  sample.higher = Locate(EchoOf(pair, line, range_time, HEIGHT_STEP + scene.local_height));
  sample.target = Locate(EchoOf(pair, line, range_time, scene.local_height));
  const GROUND_POINT& point = sample.target;
  GlobalLog.printf_line(DEBUG, "   Earth vector : (%6.2lf %6.2lf %6.2lf)", point.position[0],
                        point.position[1], point.position[2]);
  GlobalLog.printf_line(DEBUG, "   Earth lat = %3.2lf lon = %3.2lf Incid = %lf", point.latitude,
                        point.longitude, point.incidence);
  FindSlave(sample, pair, line, bistatic);
  GlobalLog.printf_line(DEBUG, "corresponding az_time in slave = %f",
                        pair.is_single_pass ? sample.bistatic_time : sample.slave_time);
  CompleteSample(sample, pair, line, bistatic);
  return sample;
}

void SweepLine(SWEEP& sweep, AZIMUTH_POSITION k, const SCENE& scene, const PAIR_CONSTANTS& pair,
               BISTATIC_B& bistatic) {
  const double duration = scene.master_last_az_time - scene.master_first_az_time;
  constexpr double LAST = FAR_SAMPLE;
  const double range_duration = scene.master_last_rg_time - scene.master_first_rg_time;
  GlobalLog.printf_line(INFO, "%s", "");
  GlobalLog.printf_line(INFO, "Azimuth position : %2.2f [s]", duration * int{k});
  MASTER_LINE& line = sweep.lines[k];
  line = LineAt(scene.master_orbit, scene.master_first_az_time + int{k} * duration);

  LOG_TABLE table;
  table.rule();
  table.row("|spl|dtau|baseline|eff. basel.|[m/cycl]|[cycl]|");
  table.rule();
  for (int i = 0; i < SWEEP_SAMPLES; ++i) {
    const double range_time = scene.master_first_rg_time + range_duration * (i / LAST);
    double& spl = sweep.spl.begin()[i];
    spl = i * (range_duration / LAST) * scene.range_sampling_frequency[MASTER];
    SAMPLE_GEOMETRY& sample = sweep.samples[k][i];
    sample = SweepSample(scene, pair, line, range_time, bistatic);
    const double rounded = spl + 0.5;
    table.row("|%5d|%e|%4.2f|%4.2f|%+4.2f|%4.2f|", static_cast<int>(rounded),
              range_time - scene.master_first_rg_time, sample.baseline, sample.effective_baseline,
              sample.metres_per_cycle, sample.phase);
  }
  table.rule();
  table.flush(INFO);
  const auto [least, largest] = std::minmax_element(
      std::begin(sweep.samples[k]), std::end(sweep.samples[k]),
      [](const SAMPLE_GEOMETRY& a, const SAMPLE_GEOMETRY& b) { return a.phase < b.phase; });
  GlobalLog.printf_line(INFO, "Phase variation due to geometry     [cycles] : %f",
                        std::fabs(largest->phase - least->phase));
}

}  // namespace

SWEEP sweep_flat_earth(const SCENE& scene, double look_direction, BISTATIC_B& bistatic) {
  const PAIR_CONSTANTS pair = ConstantsOf(scene, look_direction);
  SWEEP sweep;
  for (const AZIMUTH_POSITION k : {FIRST_LINE, LAST_LINE}) {
    SweepLine(sweep, k, scene, pair, bistatic);
  }
  return sweep;
}

CORNERS corners_of(const SWEEP& sweep) {
  const auto& early = sweep.samples[FIRST_LINE];
  const auto& late = sweep.samples[LAST_LINE];
  const auto longitude = [](const SAMPLE_GEOMETRY& sample) {
    return static_cast<float>(sample.target.longitude);
  };
  const auto latitude = [](const SAMPLE_GEOMETRY& sample) {
    return static_cast<float>(sample.target.latitude);
  };
  const auto incidence = [](const SAMPLE_GEOMETRY& sample) {
    return static_cast<float>(sample.target.incidence);
  };
  return {.heading_angle = static_cast<float>(early[NEAR_SAMPLE].target.heading),
          .incidence_angle_near_range = incidence(early[NEAR_SAMPLE]),
          .incidence_angle_mid_range = incidence(late[MID_SAMPLE]),
          .incidence_angle_far_range = incidence(early[FAR_SAMPLE]),
          .early_az_near_rg_longitude = longitude(early[NEAR_SAMPLE]),
          .early_az_near_rg_latitude = latitude(early[NEAR_SAMPLE]),
          .early_az_far_rg_longitude = longitude(early[FAR_SAMPLE]),
          .early_az_far_rg_latitude = latitude(early[FAR_SAMPLE]),
          .late_az_near_rg_longitude = longitude(late[NEAR_SAMPLE]),
          .late_az_near_rg_latitude = latitude(late[NEAR_SAMPLE]),
          .late_az_far_rg_longitude = longitude(late[FAR_SAMPLE]),
          .late_az_far_rg_latitude = latitude(late[FAR_SAMPLE])};
}

LINE_VALUES line_values_of(const SWEEP& sweep) {
  LINE_VALUES values;
  for (const AZIMUTH_POSITION k : {FIRST_LINE, LAST_LINE}) {
    const auto line = [&](double SAMPLE_GEOMETRY::*member) {
      return sweep.Values(k, [&](const SAMPLE_GEOMETRY& sample) { return sample.*member; });
    };
    values.phase_to_height_conv[k] = line(&SAMPLE_GEOMETRY::metres_per_cycle);
    values.master_incidence_angle[k] =
        sweep.Values(k, [](const SAMPLE_GEOMETRY& sample) { return sample.target.incidence; });
    values.slave_incidence_angle[k] = line(&SAMPLE_GEOMETRY::slave_incidence);
    values.master_look_angle[k] = line(&SAMPLE_GEOMETRY::master_look_angle);
    values.slave_look_angle[k] = line(&SAMPLE_GEOMETRY::slave_look_angle);
    values.master_range_distance[k] = line(&SAMPLE_GEOMETRY::master_range);
    values.slave_range_distance[k] = line(&SAMPLE_GEOMETRY::slave_range);
  }
  return values;
}

}  // namespace varnoth
