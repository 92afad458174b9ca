#pragma once

namespace varnoth {

/// How the search of a solver ended. Solvers return it with the numbers that describe the failure;
/// the caller reports it.
///
///     if (point.status != SOLVER_STATUS::FOUND) std::puts(StatusText(point.status));
enum class SOLVER_STATUS {
  FOUND,
  INSIDE_THE_EARTH,    ///< the satellite is nearer to the centre than the pole
  NO_SATELLITE_ANGLE,  ///< the satellite's coordinates are not numbers
  RADIAL_VELOCITY,     ///< there is no across-track direction
  NO_INTERSECTION,     ///< the range sphere and the Earth's surface do not meet
  NO_CONVERGENCE,      ///< the steps ran out
  NO_TARGET_ANGLE,     ///< the target's coordinates are not numbers
};

/// A status in a few words, for instance "no convergence".
const char* StatusText(SOLVER_STATUS status);

}  // namespace varnoth
