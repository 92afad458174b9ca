#include "geometry/geolocation_fast.hpp"

#include <algorithm>

#include "geometry/ground_point.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "log/log.hpp"

namespace varnoth {

void geolocation_fast(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity) {
  const ECHO echo{sat_pos, sat_vel,  look_direction, height,
                  rpole,   requator, fast_time,      los_velocity};
  const GROUND_POINT point = LocateEcho(echo, work);
  if (point.status == SOLVER_STATUS::FOUND || point.status == SOLVER_STATUS::NO_TARGET_ANGLE) {
    std::copy_n(point.position, 3, earth_vect);
    heading = point.heading;
  }
  TellGeolocation(echo, point);
  latitude = point.latitude;
  longitude = point.longitude;
  incidence = point.incidence;
}

void TellGeolocation(const ECHO& echo, const GROUND_POINT& point) {
  constexpr const char* SOLVER = "geolocation_fast";
  if (point.status != SOLVER_STATUS::FOUND) {
    FailGeolocation(SOLVER, echo, point, "earth_vect.x", "earth_vect.y");
  }
  GlobalLog.set(TRACE) << SOLVER << ": " << point.steps << " iterations.\n";
}

}  // namespace varnoth
