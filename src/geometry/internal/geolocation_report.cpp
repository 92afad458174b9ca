#include "geometry/internal/geolocation_report.hpp"

#include "foundation/errors.hpp"
#include "foundation/vector.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

LOG& Alarm(const char* solver) { return GlobalLog.set(ALARM) << solver << ": "; }

void LogState(const char* name, const double v[3]) {
  GlobalLog << name << " (" << v[0] << "," << v[1] << "," << v[2] << ")=" << Length(v);
}

}  // namespace

void LogCall(const GEOLOCATION_CALL& call) {
  GlobalLog.set(INFO) << call.solver << " was called with look_direction " << call.look_direction
                      << " height " << call.height << " rpole " << call.rpole << " requator "
                      << call.requator << call.range_name << call.range;
  LogState(" sat_pos", call.sat_pos);
  LogState(" sat_vel", call.sat_vel);
  GlobalLog << ".\n";
}

void LogNoIntersection(const char* solver) {
  Alarm(solver) << "No intersection of earth ellipsoid and sphere around the satellite\n";
}

void LogStep(const char* solver, int step) {
  Alarm(solver) << "during iteration in step: " << step << "\n";
}

void LogVerticalVelocity(const char* solver) {
  Alarm(solver) << "Vertical velocity not allowed (v_tan=0)\n";
}

void FailInsideTheEarth(const char* solver, double r) {
  Alarm(solver) << "satellite position lies within the earth!\n";
  Alarm(solver) << "length of satellite position is: " << r << "\n";
  throw ERROR_ARGUMENT();
}

void FailSatelliteAngle(const char* solver) {
  Alarm(solver) << "determination of angle theta failed!\n";
  throw ERROR_UNHANDLED_CASE();
}

void FailIntersection(const GEOLOCATION_CALL& call, int step) {
  LogNoIntersection(call.solver);
  LogStep(call.solver, step);
  LogCall(call);
  throw ERROR_DATA();
}

void FailConvergence(const GEOLOCATION_CALL& call, int steps, double change, double range_residual,
                     double doppler_residual, double tolerance) {
  Alarm(call.solver) << "convergence problem\n";
  LogCall(call);
  GlobalLog.set(INFO) << "accuracy after " << steps << " steps: " << change << " " << range_residual
                      << " " << doppler_residual << " (" << tolerance << ")\n";
  throw ERROR_ALGORITHM();
}

void FailTargetAngle(const char* solver, const char* x_name, const char* y_name,
                     const double target[3]) {
  Alarm(solver) << "unexpected error!\n";
  GlobalLog.set(ALARM) << x_name << ": " << target[0] << "\n";
  GlobalLog.set(ALARM) << y_name << ": " << target[1] << "\n";
  throw ERROR_ALGORITHM();
}

}  // namespace varnoth
