#pragma once

#include "driver/geometry_state.hpp"
#include "geometry/sample_geometry.hpp"

namespace varnoth {

/// What the geometry of a sample needs from the scene, for a look direction: -1 left, +1 right. The
/// result points into the scene, which must outlive it.
///
///     const PAIR_CONSTANTS pair = ConstantsOf(scene, 1.0);
PAIR_CONSTANTS ConstantsOf(const SCENE& scene, double look_direction);

/// The point that an echo comes from; logs the solver's lines. Throws what geolocation_fast throws.
GROUND_POINT Locate(const ECHO& echo);

}  // namespace varnoth
