#include "driver/look_direction.hpp"

#include <cmath>

#include "driver/scene_geometry.hpp"
#include "driver/scene_parameters.hpp"
#include "foundation/constants.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr double LEFT = -1.0;
constexpr double RIGHT = 1.0;

/// Degrees to radians, doubled first and halved by the 360; the rounding to float takes part in the
/// comparison of the two sides.
float Radians(float degrees) {
  const double doubled = degrees + degrees;
  return static_cast<float>(doubled * PI / 360.0);
}

/// Plain distance in degrees, without a weight on the longitude, between the mid point of the scene
/// on one side of the track and the stated centre.
double DistanceFromCentre(const GEOMETRY_STATE& state, const MASTER_LINE& line, double side) {
  const double range_time = 0.5 * (state.master_first_rg_time + state.master_last_rg_time);
  const GROUND_POINT point = Locate({line.position, line.velocity, side, state.local_height,
                                     state.rpole, state.requator, range_time});
  const double north =
      point.latitude - static_cast<double>(state.center_latitude[MASTER]) * 180.0 / PI;
  double east = point.longitude - static_cast<double>(state.center_longitude[MASTER]) * 180.0 / PI;
  if (east > 180.0) east -= 360.0;
  if (-180.0 > east) east += 360.0;
  return std::sqrt(north * north + east * east);
}

}  // namespace

void settle_look_direction(GEOMETRY_STATE& state, PARAMETER_POOL& master_pool,
                           PARAMETER_POOL& slave_pool) {
  if (state.look_direction[MASTER] == state.look_direction[SLAVE]) {
    state.sensor_look_direction = state.look_direction[MASTER];
    GlobalLog.printf_line(INFO, "take look direction from input scenes");
    state.center_latitude[MASTER] = 0.0F;
    state.center_longitude[MASTER] = 0.0F;
  } else {
    GlobalLog.printf_line(WARNING, "input scenes have different look directions");
    log_look_direction(WARNING, "master: ", state.look_direction[MASTER]);
    log_look_direction(WARNING, "slave:  ", state.look_direction[SLAVE]);
    GlobalLog.printf_line(WARNING, "try to detect look direction by myself..");
    read_scene_centers(state, master_pool, slave_pool);
    state.center_latitude[MASTER] = Radians(state.center_latitude[MASTER]);
    state.center_longitude[MASTER] = Radians(state.center_longitude[MASTER]);
    const double azimuth_time = 0.5 * (state.master_first_az_time + state.master_last_az_time);
    const MASTER_LINE line = LineAt(state.master_orbit, azimuth_time);
    const double left = DistanceFromCentre(state, line, LEFT);
    const double right = DistanceFromCentre(state, line, RIGHT);
    state.sensor_look_direction = left > right ? RIGHT : LEFT;
  }
  log_look_direction(INFO, "Sensor look direction is: ", state.sensor_look_direction);
}

}  // namespace varnoth
