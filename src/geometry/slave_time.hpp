#pragma once

#include "geometry/solver_status.hpp"
#include "orbit/scene_orbit.hpp"

namespace varnoth {

/// Where a search for the time of closest approach ended.
struct CLOSEST_APPROACH {
  double time;             ///< s
  double range;            ///< distance at the last evaluation, m
  SOLVER_STATUS status;    ///< FOUND or NO_CONVERGENCE
  int corrections;         ///< of the time
  double last_correction;  ///< s
  double residual;         ///< (P(t) - target) · V(t) at the last evaluation, m²/s
};

/// The search of `CalcSlaveTime` without its line. Logs, throws and allocates nothing but what the
/// orbit does.
CLOSEST_APPROACH FindClosestApproach(const SCENE_ORBIT& orbit, const double target[3],
                                     double start);

/// What is done with a search that did not end.
using TELL_SEARCH = void (*)(const CLOSEST_APPROACH&);

/// Tells of it at WARNING.
void TellOpenSearch(const CLOSEST_APPROACH& search);

/// Time (s, before the orbit's time offset) at which an orbit passes closest to a fixed point
/// `target` (m, Earth-fixed): a Newton search on f(t) = (P(t) - target) · V(t) from `t` on, to
/// |f| <= 1e-9 m²/s or a correction of 1e-9 s.
///
/// `range` (m) is the distance at the last evaluation, so it belongs to the time before the last
/// correction. A search that has not ended after a hundred corrections is told at WARNING and
/// returns what it has.
double CalcSlaveTime(const SCENE_ORBIT& orbit, const double target[3], double& range, double t);

}  // namespace varnoth
