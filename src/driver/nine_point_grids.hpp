#pragma once

#include "driver/geometry_state.hpp"

namespace varnoth {

/// Logs how effective baseline and baseline (m) vary over the scene: two tables of near, mid and
/// far range on the first, middle and last line, at the zero-Doppler time of the slave.
/// `look_direction` is -1 (left) or +1 (right). Throws what the geolocation and the orbits throw;
/// the log then has neither table.
void print_nine_point_grids(const SCENE& scene, double look_direction);

}  // namespace varnoth
