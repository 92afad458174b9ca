#pragma once

#include "driver/geometry_state.hpp"
#include "geometry/sample_geometry.hpp"

namespace varnoth {

/// What the library's geometry of a sample takes from the scene, behind `settle_look_direction`.
PAIR_CONSTANTS ConstantsOf(const GEOMETRY_STATE& state);

/// The point that an echo comes from, with the solver's lines. Throws what geolocation_fast throws.
GROUND_POINT Locate(const ECHO& echo);

}  // namespace varnoth
