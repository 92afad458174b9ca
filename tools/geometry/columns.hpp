#pragma once

#include <array>
#include <cstddef>

namespace varnoth::tools {

/// A quantity that the geometry of a point has.
struct COLUMN {
  const char* name;
  const char* unit;  ///< as UDUNITS writes it; 1 for none
  int decimals;      ///< in texts
  const char* meaning;
};

inline constexpr COLUMN COLUMNS[] = {
    {"line", "1", 6, "line of the master, counted from 0"},
    {"sample", "1", 6, "range sample of the master, counted from 0"},
    {"height_m", "m", 4, "height above the ellipsoid"},
    {"longitude_deg", "degrees_east", 10, "longitude of the target, 0 to 360"},
    {"latitude_deg", "degrees_north", 10,
     "geodetic latitude of the target on the raised ellipsoid"},
    {"incidence_deg", "degree", 9, "angle at the target from the ellipsoid's normal to the master"},
    {"slave_incidence_deg", "degree", 9,
     "angle at the target from the ellipsoid's normal to the slave"},
    {"look_angle_deg", "degree", 9, "angle at the master from the Earth's centre to the target"},
    {"slave_look_angle_deg", "degree", 9,
     "angle at the slave from the Earth's centre to the target"},
    {"range_m", "m", 7, "distance from the master to the target"},
    {"slave_range_m", "m", 7, "distance from the slave at its closest time to the target"},
    {"range_difference_m", "m", 7, "range of the master minus that of the slave"},
    {"baseline_m", "m", 7, "distance of the two satellites"},
    {"perpendicular_m", "m", 7,
     "baseline across the master's line of sight and velocity, positive if the slave lies above"},
    {"parallel_m", "m", 7,
     "baseline along the master's line of sight, positive towards the target"},
    {"along_track_m", "m", 7, "baseline along the master's velocity"},
    {"metres_per_cycle", "m", 6,
     "height per cycle of phase, negative where the phase grows with height; 999999999999999 "
     "without a baseline"},
    {"phase_cycles", "cycle", 7, "phase of the master minus that of the slave"},
    {"slave_line", "1", 7, "line of the slave's grid at the slave's zero-Doppler time"},
    {"slave_sample", "1", 7, "range sample of the slave's grid"},
};
inline constexpr std::size_t COLUMN_COUNT = std::size(COLUMNS);

/// How many columns say which point a row is about.
inline constexpr std::size_t POINT_COLUMNS = 3;

/// Values in the order of COLUMNS; those of a point without geometry are NaN behind the first
/// three.
using ROW = std::array<double, COLUMN_COUNT>;

}  // namespace varnoth::tools
