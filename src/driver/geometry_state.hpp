#pragma once

#include <array>

#include "driver/scene_enumerations.hpp"
#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "foundation/vector.hpp"
#include "orbit/general_orbit.hpp"

namespace varnoth {

/// Indices of the two acquisitions in arrays of two: `scene.prf[SLAVE]`.
enum ROLE : int { MASTER = 0, SLAVE = 1 };
/// Indices of the two azimuth positions, the first and the last line of the master.
enum AZIMUTH_POSITION : int { FIRST_LINE = 0, LAST_LINE = 1 };

/// What a run reads about its pair, with the end times and radii that follow from it. No
/// calculation changes it or reads a pool. Unless noted otherwise, times are in seconds on the axis
/// of the scene parameters, angles in degrees, lengths in metres.
struct SCENE {
  SCENE_ORBIT master_orbit;
  SCENE_ORBIT slave_orbit;

  double master_first_az_time = 0.0;  ///< line 0
  double slave_first_az_time = 0.0;
  double master_last_az_time = 0.0;  ///< last line
  double slave_last_az_time = 0.0;
  double master_first_rg_time = 0.0;  ///< sample 0, two-way
  double slave_first_rg_time = 0.0;
  double master_last_rg_time = 0.0;  ///< last sample, two-way
  double slave_last_rg_time = 0.0;
  int n_lines = 0;  ///< of both acquisitions
  int n_samples = 0;
  int look_direction[2] = {};               ///< as the scenes state it: -1 left, +1 right
  double radar_frequency[2] = {};           ///< Hz
  double range_sampling_frequency[2] = {};  ///< Hz
  double prf[2] = {};                       ///< lines per second
  double az_bandwidth[2] = {};              ///< Hz
  VECTOR<double> ellipsoid_parameters;      ///< elements 7 and 8: equatorial and polar radius
  OBSERVATION_MODE observation_mode;
  STRING orbit_interpolation;
  double local_height = 0.0;  ///< above the ellipsoid, for every geolocation
  double requator = 0.0;
  double rpole = 0.0;

  bool IsSinglePass() const { return observation_mode.id == OBSERVATION_MODE::SINGLE_PASS; }
};

/// Places and angles at the ends of the sweep's lines.
struct CORNERS {
  float heading_angle = 0.0F;               ///< at the first sample of the first line
  float incidence_angle_near_range = 0.0F;  ///< of the first line
  float incidence_angle_mid_range = 0.0F;   ///< of the last line
  float incidence_angle_far_range = 0.0F;   ///< of the first line
  float early_az_near_rg_longitude = 0.0F;
  float early_az_near_rg_latitude = 0.0F;
  float early_az_far_rg_longitude = 0.0F;
  float early_az_far_rg_latitude = 0.0F;
  float late_az_near_rg_longitude = 0.0F;
  float late_az_near_rg_latitude = 0.0F;
  float late_az_far_rg_longitude = 0.0F;
  float late_az_far_rg_latitude = 0.0F;
};

/// Single numbers for the scene as a whole.
struct STATISTICS {
  float scene_center_longitude = 0.0F;  ///< mean of the four corners
  float scene_center_latitude = 0.0F;
  float ssc_pixel_spacing_ground_range = 0.0F;
  float ssc_pixel_spacing_azimuth = 0.0F;
  double height_conversion_factor = 0.0;  ///< mean, metres per cycle
  double eff_baseline = 0.0;              ///< effective baseline that matches this mean
  double delta_r = 0.0;                   ///< mean range difference
};

/// The phase over the scene.
struct FLAT_EARTH {
  std::array<ARRAY<double>, 2>
      flat_phase_poly;                    ///< cycles over master range samples, constant term first
  STRING equator_crossing_direction;      ///< "ascending" or "descending"
  double fringe_frequency_azimuth = 0.0;  ///< cycles per line, despite its comment in the pool
  double fringe_frequency_range = 0.0;    ///< cycles per sample
};

/// The eleven values of the sweep for each azimuth position.
struct LINE_VALUES {
  std::array<VECTOR<double>, 2> phase_to_height_conv;  ///< metres per cycle
  std::array<VECTOR<double>, 2> master_incidence_angle;
  std::array<VECTOR<double>, 2> slave_incidence_angle;
  std::array<VECTOR<double>, 2> master_look_angle;
  std::array<VECTOR<double>, 2> slave_look_angle;
  std::array<VECTOR<double>, 2> master_range_distance;
  std::array<VECTOR<double>, 2> slave_range_distance;
};

/// The results of a run.
struct RESULTS {
  double sensor_look_direction = 0.0;  ///< -1.0 or +1.0
  CORNERS corners;
  STATISTICS statistics;
  FLAT_EARTH flat_earth;
  LINE_VALUES line_values;
};

/// Everything that a run knows about its pair.
struct GEOMETRY_STATE {
  SCENE scene;
  RESULTS results;
};

}  // namespace varnoth
