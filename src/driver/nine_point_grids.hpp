#pragma once

#include "driver/geometry_state.hpp"

namespace varnoth {

/// Prints how effective baseline and baseline spread over the scene: two tables of near, mid and
/// far range on the first, middle and last line, at the plain zero-Doppler slave time. Throws what
/// the geolocation and the orbits throw; the log then holds neither table.
void print_nine_point_grids(const SCENE& scene, double look_direction);

}  // namespace varnoth
