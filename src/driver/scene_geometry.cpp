#include "driver/scene_geometry.hpp"

#include "foundation/constants.hpp"
#include "geometry/geolocation_fast.hpp"

namespace varnoth {

GROUND_POINT Locate(const ECHO& echo) {
  GEOLOCATION_WORK work;
  const GROUND_POINT point = LocateEcho(echo, work);
  TellGeolocation(echo, point);
  return point;
}

PAIR_CONSTANTS ConstantsOf(const GEOMETRY_STATE& state) {
  return {.master_orbit = &state.master_orbit,
          .slave_orbit = &state.slave_orbit,
          .look_direction = state.sensor_look_direction,
          .rpole = state.rpole,
          .requator = state.requator,
          .master_wavelength = SPEED_OF_LIGHT / state.radar_frequency[MASTER],
          .slave_wavelength = SPEED_OF_LIGHT / state.radar_frequency[SLAVE],
          .slave_start = state.slave_first_az_time,
          .is_single_pass = state.IsSinglePass(),
          .slave_bandwidth = state.az_bandwidth[SLAVE],
          .slave_frequency = state.radar_frequency[SLAVE],
          .tell_search = TellOpenSearch};
}

}  // namespace varnoth
