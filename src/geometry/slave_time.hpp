#pragma once

#include "geometry/solver_status.hpp"
#include "orbit/scene_orbit.hpp"

namespace varnoth {

/// Where a search for the time of closest approach ended. `time` is on the axis of the scene: the
/// orbit's time offset is not in it.
struct CLOSEST_APPROACH {
  double time;             ///< s
  double range;            ///< distance at the last evaluation, m
  SOLVER_STATUS status;    ///< FOUND or NO_CONVERGENCE
  int corrections;         ///< of the time
  double last_correction;  ///< s
  double residual;         ///< (P(t) - target) · V(t) at the last evaluation, m²/s
};

/// The search of `CalcSlaveTime` without its line, from the time `start` (s) on. Logs, throws and
/// allocates nothing except what the orbit does.
///
///     const CLOSEST_APPROACH found = FindClosestApproach(orbit, target, 1000.0);
///     if (found.status != SOLVER_STATUS::FOUND) TellOpenSearch(found);
CLOSEST_APPROACH FindClosestApproach(const SCENE_ORBIT& orbit, const double target[3],
                                     double start);

/// A function that takes a search that does not converge.
using TELL_SEARCH = void (*)(const CLOSEST_APPROACH&);

/// Logs a line at WARNING about a search that does not converge.
void TellOpenSearch(const CLOSEST_APPROACH& search);

/// Time (s, on the axis of the scene) at which an orbit passes closest to a fixed point
/// `target` (m, Earth-fixed): a Newton search on f(t) = (P(t) - target) · V(t), with
/// f' = A · (P - target) + V · V, from `t` on, to |f| <= 1e-9 m²/s or a correction of 1e-9 s.
///
/// `range` (m) is the distance at the last evaluation, which is before the last correction unless
/// |f| ends the search. A search that is still open after a hundred corrections logs a line at
/// WARNING and returns what it has. Throws what the orbit throws.
double CalcSlaveTime(const SCENE_ORBIT& orbit, const double target[3], double& range, double t);

}  // namespace varnoth
