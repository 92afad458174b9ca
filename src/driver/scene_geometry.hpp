#pragma once

#include "driver/geometry_state.hpp"
#include "geometry/sample_geometry.hpp"

namespace varnoth {

/// What the library's geometry of a sample takes from the scene, looking to a side: -1 left, +1
/// right.
PAIR_CONSTANTS ConstantsOf(const SCENE& scene, double look_direction);

/// The point that an echo comes from, with the solver's lines. Throws what geolocation_fast throws.
GROUND_POINT Locate(const ECHO& echo);

}  // namespace varnoth
