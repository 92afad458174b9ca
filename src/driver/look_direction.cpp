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

/// Degrees, rounded as a float of radians; the comparison of the two sides includes this rounding.
double RoundedDegrees(float degrees) {
  const double doubled = degrees + degrees;
  const auto radians = static_cast<float>(doubled * PI / 360.0);
  return static_cast<double>(radians) * 180.0 / PI;
}

/// Plain distance in degrees, without a weight on the longitude, between the scene's mid point on
/// one side of the track and the centre in the master pool.
double DistanceFromCenter(const SCENE& scene, const MASTER_LINE& line, double side,
                          const SCENE_CENTERS& centers) {
  const double range_time = 0.5 * (scene.master_first_rg_time + scene.master_last_rg_time);
  const GROUND_POINT point = Locate({line.position, line.velocity, side, scene.local_height,
                                     scene.rpole, scene.requator, range_time});
  const double north = point.latitude - RoundedDegrees(centers.center_latitude[MASTER]);
  double east = point.longitude - RoundedDegrees(centers.center_longitude[MASTER]);
  if (east > 180.0) east -= 360.0;
  if (-180.0 > east) east += 360.0;
  return std::sqrt(north * north + east * east);
}

double DetectLookDirection(const SCENE& scene, const SCENE_CENTERS& centers) {
  const double azimuth_time = 0.5 * (scene.master_first_az_time + scene.master_last_az_time);
  const MASTER_LINE line = LineAt(scene.master_orbit, azimuth_time);
  const double left = DistanceFromCenter(scene, line, LEFT, centers);
  const double right = DistanceFromCenter(scene, line, RIGHT, centers);
  return left > right ? RIGHT : LEFT;
}

}  // namespace

double settle_look_direction(const SCENE& scene, PARAMETER_POOL& master_pool,
                             PARAMETER_POOL& slave_pool) {
  double side = scene.look_direction[MASTER];
  if (scene.look_direction[MASTER] == scene.look_direction[SLAVE]) {
    GlobalLog.printf_line(INFO, "take look direction from input scenes");
  } else {
    GlobalLog.printf_line(WARNING, "input scenes have different look directions");
    log_look_direction(WARNING, "master: ", scene.look_direction[MASTER]);
    log_look_direction(WARNING, "slave:  ", scene.look_direction[SLAVE]);
    GlobalLog.printf_line(WARNING, "try to detect look direction by myself..");
    side = DetectLookDirection(scene, read_scene_centers(master_pool, slave_pool));
  }
  log_look_direction(INFO, "Sensor look direction is: ", side);
  return side;
}

}  // namespace varnoth
