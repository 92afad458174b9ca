#include "geometry/internal/geolocation_report.hpp"

#include "foundation/errors.hpp"
#include "foundation/vector.hpp"
#include "geometry/internal/geolocation_steps.hpp"
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

void FailGeolocation(const char* solver, const ECHO& echo, const GROUND_POINT& point,
                     const char* x_name, const char* y_name) {
  const GEOLOCATION_CALL call{solver,
                              echo.sat_pos,
                              echo.sat_vel,
                              echo.look_direction,
                              echo.height,
                              echo.rpole + echo.height,
                              echo.requator + echo.height,
                              " fast_time ",
                              echo.fast_time};
  switch (point.status) {
    case SOLVER_STATUS::INSIDE_THE_EARTH:
      Alarm(solver) << "satellite position lies within the earth!\n";
      Alarm(solver) << "length of satellite position is: " << point.satellite_distance << "\n";
      throw ERROR_ARGUMENT();
    case SOLVER_STATUS::NO_SATELLITE_ANGLE:
      Alarm(solver) << "determination of angle theta failed!\n";
      throw ERROR_UNHANDLED_CASE();
    case SOLVER_STATUS::NO_INTERSECTION:
      LogNoIntersection(solver);
      LogStep(solver, point.steps);
      LogCall(call);
      throw ERROR_DATA();
    case SOLVER_STATUS::NO_CONVERGENCE:
      Alarm(solver) << "convergence problem\n";
      LogCall(call);
      GlobalLog.set(INFO) << "accuracy after " << point.steps << " steps: " << point.radius_change
                          << " " << point.range_residual << " " << point.doppler_residual << " ("
                          << OFFSET_TOLERANCE << ")\n";
      throw ERROR_ALGORITHM();
    default:
      Alarm(solver) << "unexpected error!\n";
      GlobalLog.set(ALARM) << x_name << ": " << point.position[0] << "\n";
      GlobalLog.set(ALARM) << y_name << ": " << point.position[1] << "\n";
      throw ERROR_ALGORITHM();
  }
}

}  // namespace varnoth
