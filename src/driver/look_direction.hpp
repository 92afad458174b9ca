#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Gives the look direction of the run, -1.0 or +1.0. Where the two scenes agree it is theirs.
/// Where they differ, neither is trusted: the scene's mid point is placed on both sides of the
/// track, and the side that lands nearer to the centre that the master pool states is taken (left
/// if both are as near). Throws what the geolocation and the pools throw.
double settle_look_direction(const SCENE& scene, PARAMETER_POOL& master_pool,
                             PARAMETER_POOL& slave_pool);

}  // namespace varnoth
