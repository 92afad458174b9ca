#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace varnoth::tools {

/// A value with the place that it came from, as the pool's comment will say it: the tag, keyword or
/// rule, and what was done to the value.
template <class T>
struct SOURCED {
  T value{};
  std::string source;
};

/// A moment in UTC: the day and the seconds since its midnight. Days are counted from 1970-01-01,
/// so that a difference of two days is a whole number of days; a leap second is not counted in.
struct MOMENT {
  std::int64_t day = 0;
  std::int64_t microseconds = 0;  ///< of the day, 0 up to 86400000000
};

/// Positions (m) and velocities (m/s), Earth-fixed, at epochs in UTC. All lists have one length.
struct STATE_VECTORS {
  std::vector<MOMENT> epoch;
  std::array<std::vector<double>, 3> position;
  std::array<std::vector<double>, 3> velocity;
  std::string frame;                 ///< as the source names it
  std::string time_system;           ///< as the source names it; the epochs are UTC already
  std::string source;                ///< file and kind: precise, restituted, of the annotation
  std::vector<std::string> remarks;  ///< what was moved, cut or measured, one sentence each
};

/// What a foreign format says of one focused image: the neutral form that every reader ends in, and
/// that one writer turns into a pool.
struct SCENE {
  SOURCED<std::string> name;       ///< of the product, without folder and ending
  SOURCED<std::string> satellite;  ///< "S1A"
  std::string mode;                ///< "IW1 VV"
  std::string attribution;         ///< licence line of the data, if they have one
  SOURCED<std::int64_t> absolute_orbit;
  SOURCED<std::int64_t> relative_orbit;  ///< 0 where nothing tells it

  SOURCED<std::int64_t> line_count;
  SOURCED<std::int64_t> sample_count;
  SOURCED<MOMENT> first_line;                ///< zero-Doppler time of the first line
  SOURCED<double> first_range_time;          ///< two-way, of the first sample (s)
  SOURCED<double> line_rate;                 ///< lines of the focused image per second (Hz)
  SOURCED<double> azimuth_bandwidth;         ///< Hz
  SOURCED<double> range_sampling_frequency;  ///< Hz
  SOURCED<double> radar_frequency;           ///< Hz
  SOURCED<std::string> look_direction;       ///< "right" or "left"
  SOURCED<double> equatorial_radius;         ///< m
  SOURCED<double> polar_radius;              ///< m
  SOURCED<double> center_longitude;          ///< degrees
  SOURCED<double> center_latitude;           ///< degrees

  STATE_VECTORS orbit;
  std::vector<std::string> inputs;    ///< files that were read besides the source
  std::vector<std::string> warnings;  ///< for the screen and the pool's comment
};

}  // namespace varnoth::tools
