#include "driver/scene_geometry.hpp"

#include "geometry/geolocation_fast.hpp"

namespace varnoth {

GROUND_POINT Locate(const ECHO& echo) {
  GEOLOCATION_WORK work;
  const GROUND_POINT point = LocateEcho(echo, work);
  TellGeolocation(echo, point);
  return point;
}

PAIR_CONSTANTS ConstantsOf(const SCENE& scene, double look_direction) {
  return {.master_orbit = &scene.master_orbit,
          .slave_orbit = &scene.slave_orbit,
          .look_direction = look_direction,
          .rpole = scene.rpole,
          .requator = scene.requator,
          .master_frequency = scene.radar_frequency[MASTER],
          .slave_frequency = scene.radar_frequency[SLAVE],
          .slave_start = scene.slave_first_az_time,
          .is_single_pass = scene.IsSinglePass(),
          .slave_bandwidth = scene.az_bandwidth[SLAVE],
          .tell_search = TellOpenSearch};
}

}  // namespace varnoth
