#pragma once

#include "geometry/bistatic_b.hpp"
#include "geometry/ground_point.hpp"
#include "orbit/scene_orbit.hpp"

namespace varnoth {

/// What the geometry of a pair depends on, whatever the sample. Times are seconds on the scenes'
/// common axis.
struct PAIR_CONSTANTS {
  const SCENE_ORBIT* master_orbit;
  const SCENE_ORBIT* slave_orbit;
  double look_direction;  ///< -1 left, +1 right
  double rpole;           ///< radii of the ellipsoid, m
  double requator;
  double master_frequency;  ///< of the radars, Hz
  double slave_frequency;
  double slave_start;      ///< where the search for the slave's time begins, s
  bool is_single_pass;     ///< the slave hears the master's pulse
  double slave_bandwidth;  ///< in azimuth, Hz; of single pass alone
  /// Called for a search for the slave's time that does not end; may be null.
  TELL_SEARCH tell_search = nullptr;
};

/// A line of the master: when, and how it flew.
struct MASTER_LINE {
  double time;         ///< s
  double position[3];  ///< m, Earth-fixed
  double velocity[3];  ///< m/s
};

/// Everything that is known of a sample of the master at a height, on its target and on the target
/// HEIGHT_STEP above it.
struct SAMPLE_GEOMETRY {
  GROUND_POINT target;  ///< its status is FOUND, or the rest means nothing
  GROUND_POINT higher;
  double slave_time = 0.0;          ///< the slave's zero-Doppler time, s
  double bistatic_time = 0.0;       ///< of the slave's closest approach to the echo, s; single pass
  double slave_position[3] = {};    ///< at `slave_time`, m
  double master_range = 0.0;        ///< m
  double slave_range = 0.0;         ///< m
  double range_difference = 0.0;    ///< master minus slave, m
  double baseline = 0.0;            ///< m
  double effective_baseline = 0.0;  ///< sqrt(B² - ΔR²), in single pass half of it; m
  double parallel = 0.0;     ///< of the baseline, along the line of sight, towards the target, m
  double along_track = 0.0;  ///< of the baseline, along the master's velocity, m
  /// Of the baseline, across both; positive where the slave lies above the line of sight, m.
  double perpendicular = 0.0;
  double master_look_angle = 0.0;  ///< degrees at the satellite from the nadir
  double slave_look_angle = 0.0;
  double slave_incidence = 0.0;   ///< degrees; the master's is the target's
  double delay = 0.0;             ///< of the bistatic echo, s; single pass
  double phase = 0.0;             ///< master minus slave, cycles
  double phase_difference = 0.0;  ///< of the higher target against the target, cycles
  double metres_per_cycle = 0.0;
};

/// The second target's height over the first, m.
inline constexpr double HEIGHT_STEP = 100.0;
/// Metres per cycle of a sample whose baseline is too short to tell heights apart.
inline constexpr double NO_HEIGHT_CONVERSION = 999999999999999.0;

/// The master at a time. Throws what the orbit throws.
MASTER_LINE LineAt(const SCENE_ORBIT& master_orbit, double time);

/// The geometry of the sample at a line, a range time (two-way, s) and a height (m). Logs nothing;
/// throws what the orbits throw. Any number of threads may call it on the same orbits, each with a
/// search of its own, which serves single pass alone.
///
///     BISTATIC_SEARCH search;
///     const MASTER_LINE line = LineAt(master_orbit, 1000.0);
///     const SAMPLE_GEOMETRY sample = SampleGeometry(pair, line, 0.0056, 120.0, search);
///     if (sample.target.status == SOLVER_STATUS::FOUND) std::printf("%f\n", sample.perpendicular);
SAMPLE_GEOMETRY SampleGeometry(const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                               double range_time, double height, BISTATIC_SEARCH& search);

/// Its steps, for whoever tells of them one by one or needs some alone; they throw what the orbits
/// throw. The echo that `LocateEcho` places, for `target` or `higher`; it points into `line`.
ECHO EchoOf(const PAIR_CONSTANTS& pair, const MASTER_LINE& line, double range_time, double height);
/// From `target`: the slave's zero-Doppler time and its place then.
void PlaceSlave(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair);
/// From both places: ranges, their difference, baseline and effective baseline.
void MeasureBaseline(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line);
/// From `target`: `slave_time` and place, in single pass `bistatic_time` and `delay`.
void FindSlave(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
               BISTATIC_SEARCH& search);
/// All the rest but the baseline's parts `parallel`, `along_track` and `perpendicular`.
void CompleteSample(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                    BISTATIC_SEARCH& search);

}  // namespace varnoth
