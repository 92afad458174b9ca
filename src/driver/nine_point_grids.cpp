#include "driver/nine_point_grids.hpp"

#include <array>

#include "driver/scene_geometry.hpp"
#include "log/log.hpp"
#include "tables/log_table.hpp"

namespace varnoth {

namespace {

constexpr int POINTS = 3;
/// Near, mid and far range.
using ROW = std::array<double, POINTS>;

/// One of the two tables.
class GRID_TABLE {
 public:
  explicit GRID_TABLE(const ROW& s) {
    table.rule();
    table.row("|az line|near rg|mid rg|far rg|");
    table.row("|%s|(%5d)|(%5d)|(%5d)|", " ", static_cast<int>(s[0]), static_cast<int>(s[1]),
              static_cast<int>(s[2]));
    table.rule();
  }
  void Line(double line, const ROW& v) {
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

void print_nine_point_grids(const SCENE& scene, double look_direction) {
  const PAIR_CONSTANTS pair = ConstantsOf(scene, look_direction);
  const double last = scene.n_samples - 1.0;
  const ROW samples = {0.0, 0.5 * last, last};
  GRID_TABLE effective_table(samples);
  GRID_TABLE baseline_table(samples);

  for (int j = 0; j < POINTS; ++j) {
    const double line_number = (scene.n_lines - 1.0) * (j * 0.5);
    const MASTER_LINE line =
        LineAt(scene.master_orbit, line_number / scene.prf[MASTER] + scene.master_first_az_time);
    ROW baselines;
    ROW effectives;
    for (int m = 0; m < POINTS; ++m) {
      const double range_time =
          samples[m] / scene.range_sampling_frequency[MASTER] + scene.master_first_rg_time;
      SAMPLE_GEOMETRY sample;
      sample.target = Locate(EchoOf(pair, line, range_time, scene.local_height));
      PlaceSlave(sample, pair);
      MeasureBaseline(sample, pair, line);
      baselines[m] = sample.baseline;
      effectives[m] = sample.effective_baseline;
    }
    effective_table.Line(line_number, effectives);
    baseline_table.Line(line_number, baselines);
  }
  effective_table.Print("Effective Baseline for a 9-point grid .. ");
  baseline_table.Print("Baseline for a 9-point grid .. ");
}

}  // namespace varnoth
