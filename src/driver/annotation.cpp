#include "driver/annotation.hpp"

namespace varnoth {

void annotate_results(const RESULTS& results, PARAMETER_POOL_READ_WRITE_CHANGE& insar_pool) {
  // The degree sign is a single byte, as in Latin-1.
  constexpr const char* LOOK = "Look angle [\xB0] (calibration purposes)";
  constexpr const char* INCIDENCE = "Incidence angle [\xB0] (calibration purposes)";
  constexpr const char* DISTANCE = "Range distance [m] (calibration purposes)";
  constexpr const char* METRES_PER_CYCLE = "Conversion factor in [m/cycl]";

  const auto write = [&](const char* key, const auto& value) { insar_pool.Change(key, value); };
  const auto write_with = [&](const char* comment, const char* key, const auto& value) {
    insar_pool.Change(key, value, ARRAY<STRING>(comment));
  };
  /// Writes the values of the first line, then those of the last one.
  const auto write_lines = [&](const char* comment, const char* early_key, const char* late_key,
                               const std::array<VECTOR<double>, 2>& values) {
    write_with(comment, early_key, values[FIRST_LINE]);
    write_with(comment, late_key, values[LAST_LINE]);
  };

  const auto& [side, corners, statistics, flat_earth, line_values] = results;
  write("early_az_near_rg_longitude", corners.early_az_near_rg_longitude);
  write("early_az_near_rg_latitude", corners.early_az_near_rg_latitude);
  write("early_az_far_rg_longitude", corners.early_az_far_rg_longitude);
  write("early_az_far_rg_latitude", corners.early_az_far_rg_latitude);
  write("late_az_near_rg_longitude", corners.late_az_near_rg_longitude);
  write("late_az_near_rg_latitude", corners.late_az_near_rg_latitude);
  write("late_az_far_rg_longitude", corners.late_az_far_rg_longitude);
  write("late_az_far_rg_latitude", corners.late_az_far_rg_latitude);
  write_with("Average range fringe frequency in [cycl/spl]", "fringe_frequency_range",
             flat_earth.fringe_frequency_range);
  write("center_longitude", statistics.scene_center_longitude);
  write("center_latitude", statistics.scene_center_latitude);
  write_with("Average azimuth fringe frequency in [cycl/spl]", "fringe_frequency_azimuth",
             flat_earth.fringe_frequency_azimuth);
  write_with(METRES_PER_CYCLE, "height_conversion_factor", statistics.height_conversion_factor);
  write_with("Effective baseline in [m]", "eff_baseline", statistics.eff_baseline);
  write_with("Delta R [m]", "varnoth_deltaR", statistics.delta_r);
  write("flat_phase_poly_early_az", flat_earth.flat_phase_poly[FIRST_LINE]);
  write("flat_phase_poly_late_az", flat_earth.flat_phase_poly[LAST_LINE]);
  write("incidence_angle_near_range", corners.incidence_angle_near_range);
  write("incidence_angle_mid_range", corners.incidence_angle_mid_range);
  write("incidence_angle_far_range", corners.incidence_angle_far_range);
  write("ssc_pixel_spacing_azimuth", statistics.ssc_pixel_spacing_azimuth);
  write("ssc_pixel_spacing_ground_range", statistics.ssc_pixel_spacing_ground_range);
  write("heading_angle", corners.heading_angle);
  write("equator_crossing_direction", flat_earth.equator_crossing_direction);
  write("sensor_look_direction", look_direction_text(side));
  write_lines(METRES_PER_CYCLE, "early_az_phase_to_height_conv", "late_az_phase_to_height_conv",
              line_values.phase_to_height_conv);
  write_lines(LOOK, "master_early_az_look_angle", "master_late_az_look_angle",
              line_values.master_look_angle);
  write_lines(LOOK, "slave_early_az_look_angle", "slave_late_az_look_angle",
              line_values.slave_look_angle);
  write_lines(DISTANCE, "master_early_az_range_distance", "master_late_az_range_distance",
              line_values.master_range_distance);
  write_lines(DISTANCE, "slave_early_az_range_distance", "slave_late_az_range_distance",
              line_values.slave_range_distance);
  write_lines(INCIDENCE, "master_early_az_incidence_angle", "master_late_az_incidence_angle",
              line_values.master_incidence_angle);
  write_lines(INCIDENCE, "slave_early_az_incidence_angle", "slave_late_az_incidence_angle",
              line_values.slave_incidence_angle);
}

}  // namespace varnoth
