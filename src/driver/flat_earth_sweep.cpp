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

constexpr double C = SPEED_OF_LIGHT;

/// Angle in degrees at a satellite between the directions to the Earth's centre and to a target.
double LookAngle(const double satellite[3], const double target[3]) {
  double to_satellite[3] = {};
  Subtract(to_satellite, satellite, target);
  return std::acos(DotProduct(satellite, to_satellite) /
                   (Length(to_satellite) * Length(satellite))) *
         180.0 / PI;
}

/// Angle in degrees at a ground point between the ellipsoid's normal and the ray to a satellite.
double IncidenceAngle(const GROUND_POINT& point, const double satellite[3]) {
  const double latitude = point.latitude * PI / 180.0;
  const double longitude = point.longitude * PI / 180.0;
  const double normal[3] = {std::cos(latitude) * std::cos(longitude),
                            std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
  double to_satellite[3] = {};
  Subtract(to_satellite, satellite, point.position);
  return std::acos(DotProduct(normal, to_satellite) / Length(to_satellite)) * 180.0 / PI;
}

/// The slave's side of a sample: where it stands, the phase of the target and the phase difference
/// to the target that is higher by HEIGHT_STEP, both in cycles.
struct SLAVE_VIEW {
  double position[3] = {};
  double phase;
  double phase_difference;
};

/// One azimuth line under work.
class LINE_SWEEP {
 public:
  LINE_SWEEP(GEOMETRY_STATE& geometry, SWEEP& result, GEOLOCATION_WORK& scratch, BISTATIC_B& solver,
             AZIMUTH_POSITION line)
      : state(geometry), sweep(result), work(scratch), bistatic(solver), k(line) {}

  void Run();

 private:
  void Sample(int i, LOG_TABLE& table);
  void KeepCorner(int i, const GROUND_POINT& point);
  SLAVE_VIEW DualPass(const double target[3], const double higher[3]);
  SLAVE_VIEW SinglePass(const double target[3], const double higher[3]);
  double BistaticDelay(const double target[3], double& closest_time);

  GEOMETRY_STATE& state;
  SWEEP& sweep;
  GEOLOCATION_WORK& work;
  BISTATIC_B& bistatic;
  AZIMUTH_POSITION k;
  double azimuth_time = 0.0;
  double position[3] = {};  ///< master, m
  double velocity[3] = {};  ///< master, m/s
};

void LINE_SWEEP::Run() {
  const double duration = state.master_last_az_time - state.master_first_az_time;
  GlobalLog.printf_line(INFO, "%s", "");
  GlobalLog.printf_line(INFO, "Azimuth position : %2.2f [s]", duration * int{k});
  azimuth_time = state.master_first_az_time + int{k} * duration;
  GetPosition(state.master_orbit, azimuth_time, position);
  GetVelocity(state.master_orbit, azimuth_time, velocity);
  std::copy_n(position, 3, sweep.master_position);
  std::copy_n(velocity, 3, sweep.master_velocity);

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

  const auto locate = [&](double height) {
    return Locate(state, work, position, velocity, state.sensor_look_direction, height, range_time);
  };
  const GROUND_POINT higher = locate(HEIGHT_STEP + state.local_height);
  const GROUND_POINT point = locate(state.local_height);
  const double* const target = point.position;
  KeepCorner(i, point);
  GlobalLog.printf_line(DEBUG, "   Earth vector : (%6.2lf %6.2lf %6.2lf)", target[0], target[1],
                        target[2]);
  GlobalLog.printf_line(DEBUG, "   Earth lat = %3.2lf lon = %3.2lf Incid = %lf", point.latitude,
                        point.longitude, point.incidence);

  const SLAVE_VIEW slave = state.observation_mode.id == OBSERVATION_MODE::DUAL_PASS
                               ? DualPass(target, higher.position)
                               : SinglePass(target, higher.position);
  sweep.phase[k].GetElementBase(0)[i] = slave.phase;

  const double master_range = Distance(position, target);
  const double slave_range = Distance(slave.position, target);
  state.master_look_angle[k].GetElementBase(0)[i] = LookAngle(position, target);
  state.slave_look_angle[k].GetElementBase(0)[i] = LookAngle(slave.position, target);
  state.master_range_distance[k].GetElementBase(0)[i] = master_range;
  state.slave_range_distance[k].GetElementBase(0)[i] = slave_range;
  state.master_incidence_angle[k].GetElementBase(0)[i] = point.incidence;
  state.slave_incidence_angle[k].GetElementBase(0)[i] = IncidenceAngle(point, slave.position);

  const double baseline = Distance(position, slave.position);
  const double delta_r = master_range - slave_range;
  double effective = EffectiveBaseline(baseline, delta_r);
  if (state.IsSinglePass()) effective *= 0.5;
  state.eff_baseline += effective;
  state.delta_r += delta_r;

  double metres_per_cycle = NO_HEIGHT_CONVERSION;
  if (0.001 > std::fabs(baseline)) {
    // Assigned, not added: one such sample is to show in the mean, whatever stood there.
    state.height_conversion_factor = metres_per_cycle;
  } else {
    metres_per_cycle = -HEIGHT_STEP / slave.phase_difference;
    state.height_conversion_factor += metres_per_cycle;
  }
  state.phase_to_height_conv[k].GetElementBase(0)[i] = metres_per_cycle;
  const double rounded = spl + 0.5;
  table.row("|%5d|%e|%4.2f|%4.2f|%+4.2f|%4.2f|", static_cast<int>(rounded),
            range_time - state.master_first_rg_time, baseline, effective, metres_per_cycle,
            slave.phase);

  std::copy_n(target, 3, sweep.target);
  sweep.incidence = point.incidence;
  sweep.metres_per_cycle = metres_per_cycle;
}

SLAVE_VIEW LINE_SWEEP::DualPass(const double target[3], const double higher[3]) {
  SLAVE_VIEW view{};
  const double time = SlaveTime(state, target);
  GetPosition(state.slave_orbit, time, view.position);
  GlobalLog.printf_line(DEBUG, "corresponding az_time in slave = %f", time);
  const auto path_cycles = [&](const double point[3]) {
    return Distance(position, point) / sweep.lambda_m -
           Distance(view.position, point) / sweep.lambda_s;
  };
  view.phase = 2.0 * path_cycles(target);
  // The slave stays where it stands for the lower target.
  view.phase_difference = 2.0 * (path_cycles(higher) - path_cycles(target));
  return view;
}

double LINE_SWEEP::BistaticDelay(const double target[3], double& closest_time) {
  double velocity_squared = 0.0;
  double delay = 0.0;
  bistatic.EvaluateMonostatic(velocity_squared, closest_time, delay, target, state.slave_orbit,
                              azimuth_time, 0.0);
  // How long the target stays in the slave's azimuth band, s.
  const double span = 0.25 * state.az_bandwidth[SLAVE] * C * C * delay /
                      (velocity_squared * state.radar_frequency[SLAVE]);
  bistatic.Evaluate(velocity_squared, closest_time, delay, target, state.slave_orbit, closest_time,
                    span, 0.0, state.master_orbit, nullptr, false);
  return delay;
}

SLAVE_VIEW LINE_SWEEP::SinglePass(const double target[3], const double higher[3]) {
  SLAVE_VIEW view{};
  double closest_time = 0.0;
  const double delay = BistaticDelay(target, closest_time);
  GlobalLog.printf_line(DEBUG, "corresponding az_time in slave = %f", closest_time);
  const auto path_cycles = [&](const double point[3], double travel_time) {
    return 2.0 * Distance(position, point) / sweep.lambda_m - C * travel_time / sweep.lambda_s;
  };
  view.phase = path_cycles(target, delay);
  double higher_time = 0.0;
  const double higher_delay = BistaticDelay(higher, higher_time);
  // The baseline is measured at the slave's own zero-Doppler time, not at the bistatic time.
  GetPosition(state.slave_orbit, SlaveTime(state, target), view.position);
  view.phase_difference = path_cycles(higher, higher_delay) - path_cycles(target, delay);
  return view;
}

}  // namespace

void sweep_flat_earth(GEOMETRY_STATE& state, SWEEP& sweep, GEOLOCATION_WORK& work,
                      BISTATIC_B& bistatic) {
  sweep.lambda_m = C / state.radar_frequency[MASTER];
  sweep.lambda_s = C / state.radar_frequency[SLAVE];
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
    LINE_SWEEP(state, sweep, work, bistatic, k).Run();
  }
}

}  // namespace varnoth
