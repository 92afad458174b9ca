#pragma once

#include "geometry/ground_point.hpp"

namespace varnoth {

/// The arguments of a geolocation solver as its failures report them.
struct GEOLOCATION_CALL {
  const char* solver;
  const double* sat_pos;
  const double* sat_vel;
  double look_direction;
  double height;
  double rpole;
  double requator;
  const char* range_name;  ///< " fast_time " or " slant_range "
  double range;            ///< s or m, by its name
};

/// The lines that several solvers share, each with the solver's name in front. The call is one line
/// at INFO, the others are at ALARM.
void LogCall(const GEOLOCATION_CALL& call);
void LogNoIntersection(const char* solver);
void LogStep(const char* solver, int step);
void LogVerticalVelocity(const char* solver);

/// Logs why a search for a ground point failed and throws: ERROR_ARGUMENT (inside the Earth),
/// ERROR_UNHANDLED_CASE (no angle of the satellite), ERROR_DATA (no intersection), ERROR_ALGORITHM
/// (no convergence, no angle of the target). The names are those of the first two coordinates of
/// the target in the call.
[[noreturn]] void FailGeolocation(const char* solver, const ECHO& echo, const GROUND_POINT& point,
                                  const char* x_name, const char* y_name);

}  // namespace varnoth
