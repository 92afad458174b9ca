#include "driver/nine_point_grids.hpp"

#include "driver/scene_geometry.hpp"
#include "geometry/slave_time.hpp"
#include "log/log.hpp"
#include "tables/log_table.hpp"

namespace varnoth {

namespace {

constexpr int POINTS = 3;

/// One of the two tables.
class GRID_TABLE {
 public:
  explicit GRID_TABLE(const ARRAY<double>& sample_numbers) {
    const double* const s = sample_numbers.GetElementBase(0);
    table.rule();
    table.row("|az line|near rg|mid rg|far rg|");
    table.row("|%s|(%5d)|(%5d)|(%5d)|", " ", static_cast<int>(s[0]), static_cast<int>(s[1]),
              static_cast<int>(s[2]));
    table.rule();
  }
  void Line(double line, const ARRAY<double>& values) {
    const double* const v = values.GetElementBase(0);
    table.row("|%5d|%4.2f|%4.2f|%4.2f|", static_cast<int>(line), v[0], v[1], v[2]);
  }
  void Print(const char* title) {
    table.rule();
    GlobalLog.printf_line(INFO, "%s", title);
    table.flush(INFO);
  }

 private:
  LOG_TABLE table;
};

}  // namespace

void print_nine_point_grids(const GEOMETRY_STATE& state, GEOLOCATION_WORK& work) {
  const double factor = state.IsSinglePass() ? 0.5 : 1.0;
  ARRAY<double> samples(0, POINTS);
  double* const s = samples.GetElementBase(0);
  s[0] = 0.0;
  s[1] = 0.5 * (state.n_samples - 1.0);
  s[2] = state.n_samples - 1.0;
  GRID_TABLE effective_table(samples);
  GRID_TABLE baseline_table(samples);

  for (int j = 0; j < POINTS; ++j) {
    const double line = (state.n_lines - 1.0) * (j * 0.5);
    const double azimuth_time = line / state.prf[MASTER] + state.master_first_az_time;
    double master[3] = {};
    double velocity[3] = {};
    GetPosition(state.master_orbit, azimuth_time, master);
    GetVelocity(state.master_orbit, azimuth_time, velocity);
    ARRAY<double> baselines(0, POINTS);
    ARRAY<double> effectives(0, POINTS);
    for (int m = 0; m < POINTS; ++m) {
      const double range_time =
          s[m] / state.range_sampling_frequency[MASTER] + state.master_first_rg_time;
      const GROUND_POINT point = Locate(state, work, master, velocity, state.sensor_look_direction,
                                        state.local_height, range_time);
      double slave[3] = {};
      GetPosition(state.slave_orbit, SlaveTime(state, point.position), slave);
      const double baseline = Distance(master, slave);
      const double delta_r = Distance(master, point.position) - Distance(slave, point.position);
      baselines.GetElementBase(0)[m] = baseline;
      effectives.GetElementBase(0)[m] = EffectiveBaseline(baseline, delta_r) * factor;
    }
    effective_table.Line(line, effectives);
    baseline_table.Line(line, baselines);
  }
  effective_table.Print("Effective Baseline for a 9-point grid .. ");
  baseline_table.Print("Baseline for a 9-point grid .. ");
}

}  // namespace varnoth
