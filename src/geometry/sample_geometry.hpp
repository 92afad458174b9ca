#pragma once

#include "geometry/bistatic_b.hpp"
#include "geometry/ground_point.hpp"
#include "orbit/scene_orbit.hpp"

namespace varnoth {

/// What the geometry of a pair depends on, the same for all samples. Times are seconds on the
/// common axis of the scenes.
struct PAIR_CONSTANTS {
  const SCENE_ORBIT* master_orbit;
  const SCENE_ORBIT* slave_orbit;
  double look_direction;  ///< -1 left, +1 right
  double rpole;           ///< radii of the ellipsoid, m
  double requator;
  double master_frequency;  ///< of the radars, Hz
  double slave_frequency;
  double slave_start;      ///< where the search for the slave's time begins, s
  bool is_single_pass;     ///< the slave receives the master's pulse
  double slave_bandwidth;  ///< in azimuth, Hz; for single pass alone
  /// Called with a search for the slave's time that does not converge; may be null.
  TELL_SEARCH tell_search = nullptr;
};

/// A line of the master: its time, and the satellite's state then.
struct MASTER_LINE {
  double time;         ///< s
  double position[3];  ///< m, Earth-fixed
  double velocity[3];  ///< m/s
};

/// The numbers of a sample of the master at a height: of its target, and of the target HEIGHT_STEP
/// above it. Vectors are Earth-fixed.
struct SAMPLE_GEOMETRY {
  GROUND_POINT target;  ///< FOUND only if `higher` is, too; otherwise the rest means nothing
  GROUND_POINT higher;
  double slave_time = 0.0;          ///< the slave's zero-Doppler time, s
  double bistatic_time = 0.0;       ///< of the bistatic closest approach, s; single pass
  double slave_position[3] = {};    ///< at `slave_time`, m
  double master_range = 0.0;        ///< m
  double slave_range = 0.0;         ///< m
  double range_difference = 0.0;    ///< master minus slave, m
  double baseline = 0.0;            ///< m
  double effective_baseline = 0.0;  ///< sqrt(B² - ΔR²), in single pass half of it; m
  double parallel = 0.0;     ///< of the baseline, along the line of sight, towards the target, m
  double along_track = 0.0;  ///< of the baseline, along the master's velocity, m
  /// Of the baseline, across both; positive if the slave is above the line of sight, m.
  double perpendicular = 0.0;
  double master_look_angle = 0.0;  ///< degrees at the satellite from the nadir
  double slave_look_angle = 0.0;
  double slave_incidence = 0.0;   ///< degrees; that of the master is in `target`
  double delay = 0.0;             ///< of the bistatic echo, s; single pass
  double phase = 0.0;             ///< master minus slave, cycles of the two-way paths
  double phase_difference = 0.0;  ///< higher target minus target, cycles
  double metres_per_cycle = 0.0;
};

/// Height of the second target above the first, m.
inline constexpr double HEIGHT_STEP = 100.0;
/// Metres per cycle of a sample whose baseline, below 1 mm, is too short to tell heights apart.
inline constexpr double NO_HEIGHT_CONVERSION = 999999999999999.0;

/// The master at a time (s). Throws what the orbit throws.
MASTER_LINE LineAt(const SCENE_ORBIT& master_orbit, double time);

/// The geometry of the sample at a line, a range time (two-way, s) and a height (m); the formulas
/// are in docs/geometry.md. Logs nothing itself; throws what the orbits throw and, in single pass,
/// what `search` throws. Any number of threads may call it on the same orbits, each with a search
/// of its own, which only single pass uses.
///
///     BISTATIC_SEARCH search;
///     const MASTER_LINE line = LineAt(master_orbit, 1000.0);
///     const SAMPLE_GEOMETRY sample = SampleGeometry(pair, line, 0.0056, 120.0, search);
///     if (sample.target.status == SOLVER_STATUS::FOUND) std::printf("%f\n", sample.perpendicular);
SAMPLE_GEOMETRY SampleGeometry(const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                               double range_time, double height, BISTATIC_SEARCH& search);

// The steps of SampleGeometry, for callers that report each step or need only some. They throw what
// SampleGeometry throws.

/// The echo that `LocateEcho` places as `target`, or as `higher` for a height HEIGHT_STEP above. It
/// points into `line`, which must outlive it.
ECHO EchoOf(const PAIR_CONSTANTS& pair, const MASTER_LINE& line, double range_time, double height);
/// Sets `slave_time` and `slave_position` from `target`.
void PlaceSlave(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair);
/// Sets ranges, their difference, baseline and effective baseline from `target`, `slave_position`
/// and the line.
void MeasureBaseline(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line);
/// Sets `slave_time` and `slave_position`, or in single pass `bistatic_time` and `delay`, from
/// `target`.
void FindSlave(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
               BISTATIC_SEARCH& search);
/// After `FindSlave`, sets all the rest from `target` and `higher`, except the parts of the
/// baseline: `parallel`, `along_track` and `perpendicular`.
void CompleteSample(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                    BISTATIC_SEARCH& search);
/// After `CompleteSample`, sets the parts of the baseline.
void SplitBaseline(SAMPLE_GEOMETRY& sample, const MASTER_LINE& line);

}  // namespace varnoth
