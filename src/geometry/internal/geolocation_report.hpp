#pragma once

namespace varnoth {

/// What a geolocation solver was called with, as its failures tell it.
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

/// The lines that several solvers have in common, each with the solver's name in front. The call is
/// one line at INFO, the others are at ALARM.
void LogCall(const GEOLOCATION_CALL& call);
void LogNoIntersection(const char* solver);
void LogStep(const char* solver, int step);
void LogVerticalVelocity(const char* solver);

/// The ends of the solvers that work on the Earth radius at the target; each logs and throws.
[[noreturn]] void FailInsideTheEarth(const char* solver, double r);     // ERROR_ARGUMENT
[[noreturn]] void FailSatelliteAngle(const char* solver);               // ERROR_UNHANDLED_CASE
[[noreturn]] void FailIntersection(const GEOLOCATION_CALL&, int step);  // ERROR_DATA
/// ERROR_ALGORITHM, with the last change of the radius, the residuals and their limit.
[[noreturn]] void FailConvergence(const GEOLOCATION_CALL& call, int steps, double change,
                                  double range_residual, double doppler_residual, double tolerance);
/// ERROR_ALGORITHM; the names are those of the target's coordinates in the call.
[[noreturn]] void FailTargetAngle(const char* solver, const char* x_name, const char* y_name,
                                  const double target[3]);

}  // namespace varnoth
