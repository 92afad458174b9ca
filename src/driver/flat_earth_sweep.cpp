#include "driver/flat_earth_sweep.hpp"

#include <algorithm>
#include <cmath>

#include "driver/scene_geometry.hpp"
#include "foundation/constants.hpp"
#include "geometry/slave_time.hpp"
#include "log/log.hpp"
#include "tables/log_table.hpp"

namespace varnoth {

namespace {

/// One azimuth line under work.
class LINE_SWEEP {
 public:
  LINE_SWEEP(GEOMETRY_STATE& geometry, SWEEP& result, BISTATIC_B& solver, AZIMUTH_POSITION position)
      : state(geometry),
        pair(ConstantsOf(geometry)),
        sweep(result),
        bistatic(solver),
        k(position) {}

  void Run();

 private:
  void Sample(int i, LOG_TABLE& table);
  void KeepCorner(int i, const GROUND_POINT& point);

  GEOMETRY_STATE& state;
  const PAIR_CONSTANTS pair;
  SWEEP& sweep;
  BISTATIC_B& bistatic;
  AZIMUTH_POSITION k;
  MASTER_LINE line{};
};

void LINE_SWEEP::Run() {
  const double duration = state.master_last_az_time - state.master_first_az_time;
  GlobalLog.printf_line(INFO, "%s", "");
  GlobalLog.printf_line(INFO, "Azimuth position : %2.2f [s]", duration * int{k});
  line = LineAt(state.master_orbit, state.master_first_az_time + int{k} * duration);
  std::copy_n(line.position, 3, sweep.master_position);
  std::copy_n(line.velocity, 3, sweep.master_velocity);

  LOG_TABLE table;
  table.rule();
  table.row("|spl|dtau|baseline|eff. basel.|[m/cycl]|[cycl]|");
  table.rule();
  for (int i = 0; i < SWEEP_SAMPLES; ++i) Sample(i, table);
  table.rule();
  table.flush(INFO);
  const double* const phase = sweep.phase[k].GetElementBase(0);
  const auto [least, largest] = std::minmax_element(phase, phase + SWEEP_SAMPLES);
  GlobalLog.printf_line(INFO, "Phase variation due to geometry     [cycles] : %f",
                        std::fabs(*largest - *least));
}

void LINE_SWEEP::KeepCorner(int i, const GROUND_POINT& point) {
  constexpr int NEAR = 0;
  constexpr int MID = SWEEP_SAMPLES / 2;
  constexpr int FAR = SWEEP_SAMPLES - 1;
  const auto longitude = static_cast<float>(point.longitude);
  const auto latitude = static_cast<float>(point.latitude);
  const auto incidence = static_cast<float>(point.incidence);
  // Near and far incidence are the first line's; the mid incidence is written on both lines, so the
  // last line's stands.
  if (i == MID) state.incidence_angle_mid_range = incidence;
  if (k == FIRST_LINE && i == NEAR) {
    state.heading_angle = static_cast<float>(point.heading);
    state.incidence_angle_near_range = incidence;
    state.early_az_near_rg_longitude = longitude;
    state.early_az_near_rg_latitude = latitude;
  } else if (k == FIRST_LINE && i == FAR) {
    state.incidence_angle_far_range = incidence;
    state.early_az_far_rg_longitude = longitude;
    state.early_az_far_rg_latitude = latitude;
  } else if (k == LAST_LINE && i == NEAR) {
    state.late_az_near_rg_longitude = longitude;
    state.late_az_near_rg_latitude = latitude;
  } else if (k == LAST_LINE && i == FAR) {
    state.late_az_far_rg_longitude = longitude;
    state.late_az_far_rg_latitude = latitude;
  }
}

void LINE_SWEEP::Sample(int i, LOG_TABLE& table) {
  const double range_duration = state.master_last_rg_time - state.master_first_rg_time;
  const double range_time = state.master_first_rg_time + range_duration * (i / 10.0);
  double& spl = sweep.spl.GetElementBase(0)[i];
  spl = i * (range_duration / 10.0) * state.range_sampling_frequency[MASTER];

  SAMPLE_GEOMETRY sample;
  sample.higher = Locate(EchoOf(pair, line, range_time, HEIGHT_STEP + state.local_height));
  sample.target = Locate(EchoOf(pair, line, range_time, state.local_height));
  const GROUND_POINT& point = sample.target;
  KeepCorner(i, point);
  GlobalLog.printf_line(DEBUG, "   Earth vector : (%6.2lf %6.2lf %6.2lf)", point.position[0],
                        point.position[1], point.position[2]);
  GlobalLog.printf_line(DEBUG, "   Earth lat = %3.2lf lon = %3.2lf Incid = %lf", point.latitude,
                        point.longitude, point.incidence);

  FindSlave(sample, pair, line, bistatic);
  GlobalLog.printf_line(DEBUG, "corresponding az_time in slave = %f",
                        pair.is_single_pass ? sample.bistatic_time : sample.slave_time);
  CompleteSample(sample, pair, line, bistatic);

  sweep.phase[k].GetElementBase(0)[i] = sample.phase;
  state.master_look_angle[k].GetElementBase(0)[i] = sample.master_look_angle;
  state.slave_look_angle[k].GetElementBase(0)[i] = sample.slave_look_angle;
  state.master_range_distance[k].GetElementBase(0)[i] = sample.master_range;
  state.slave_range_distance[k].GetElementBase(0)[i] = sample.slave_range;
  state.master_incidence_angle[k].GetElementBase(0)[i] = point.incidence;
  state.slave_incidence_angle[k].GetElementBase(0)[i] = sample.slave_incidence;
  state.phase_to_height_conv[k].GetElementBase(0)[i] = sample.metres_per_cycle;

  state.eff_baseline += sample.effective_baseline;
  state.delta_r += sample.range_difference;
  if (sample.metres_per_cycle == NO_HEIGHT_CONVERSION) {
    // Assigned, not added: one such sample is to show in the mean, whatever stood there.
    state.height_conversion_factor = sample.metres_per_cycle;
  } else {
    state.height_conversion_factor += sample.metres_per_cycle;
  }
  const double rounded = spl + 0.5;
  table.row("|%5d|%e|%4.2f|%4.2f|%+4.2f|%4.2f|", static_cast<int>(rounded),
            range_time - state.master_first_rg_time, sample.baseline, sample.effective_baseline,
            sample.metres_per_cycle, sample.phase);

  std::copy_n(point.position, 3, sweep.target);
  sweep.incidence = point.incidence;
  sweep.metres_per_cycle = sample.metres_per_cycle;
}

}  // namespace

void sweep_flat_earth(GEOMETRY_STATE& state, SWEEP& sweep, BISTATIC_B& bistatic) {
  sweep.lambda_m = SPEED_OF_LIGHT / state.radar_frequency[MASTER];
  sweep.lambda_s = SPEED_OF_LIGHT / state.radar_frequency[SLAVE];
  for (const AZIMUTH_POSITION k : {FIRST_LINE, LAST_LINE}) {
    for (VECTOR<double>* values :
         {&state.phase_to_height_conv[k], &state.master_incidence_angle[k],
          &state.slave_incidence_angle[k], &state.master_look_angle[k], &state.slave_look_angle[k],
          &state.master_range_distance[k], &state.slave_range_distance[k]}) {
      *values = VECTOR<double>(0, SWEEP_SAMPLES);
    }
  }
  state.height_conversion_factor = 0.0;
  state.eff_baseline = 0.0;
  state.delta_r = 0.0;
  for (const AZIMUTH_POSITION k : {FIRST_LINE, LAST_LINE}) {
    LINE_SWEEP(state, sweep, bistatic, k).Run();
  }
}

}  // namespace varnoth
