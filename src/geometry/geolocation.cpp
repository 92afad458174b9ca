#include "geometry/geolocation.hpp"

#include <algorithm>
#include <cmath>

#include "geometry/ground_point.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

/// Throws the texts of the vector operations for vectors that give no frame: other than three
/// elements, or a radial velocity.
void RefuseWithoutFrame(const VECTOR<double>& sat_pos, const VECTOR<double>& sat_vel, double r) {
  VECTOR<double> cross = sat_pos;
  cross /= -r;
  CrossProduct(cross, cross, sat_vel);
  cross /= Length(cross);
}

}  // namespace

void geolocation(GEOLOCATION_WORK& work, const VECTOR<double>& sat_pos,
                 const VECTOR<double>& sat_vel, VECTOR<double>& earth_vect, double& heading,
                 double& latitude, double& longitude, double& incidence, double look_direction,
                 double height, double rpole, double requator, double fast_time,
                 double los_velocity) {
  constexpr const char* SOLVER = "geolocation";
  const double r = Length(sat_pos);
  const bool is_inside = std::isgreater(rpole, r);  // reported before a faulty vector
  if (!is_inside) RefuseWithoutFrame(sat_pos, sat_vel, r);
  const ECHO echo{sat_pos.begin(), sat_vel.begin(), look_direction, height,
                  rpole,           requator,        fast_time,      los_velocity};
  GROUND_POINT point;
  if (is_inside) {
    point.status = SOLVER_STATUS::INSIDE_THE_EARTH;
    point.satellite_distance = r;
  } else {
    point = LocateEcho<SUMMATION::BACKWARD>(echo, work);
  }
  const bool is_found = point.status == SOLVER_STATUS::FOUND;
  if (is_found || point.status == SOLVER_STATUS::NO_TARGET_ANGLE) {
    earth_vect = sat_pos;  // with its range
    std::copy_n(point.position, 3, earth_vect.begin());
    heading = point.heading;
  }
  if (!is_found) FailGeolocation(SOLVER, echo, point, "earth_vect[0]", "earth_vect[1]");
  latitude = point.latitude;
  longitude = point.longitude;
  incidence = point.incidence;
  GlobalLog.set(TRACE) << SOLVER << ": " << point.steps << " iterations.\n";
}

}  // namespace varnoth
