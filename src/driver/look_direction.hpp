#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Settles the look direction of the run. Where the two scenes agree it is theirs. Where they
/// differ, neither is trusted: the scene's mid point is placed on both sides of the track, and the
/// side that lands nearer to the centre that the master pool states is taken (left if both are as
/// near). Throws what the geolocation and the pools throw.
void settle_look_direction(GEOMETRY_STATE& state, PARAMETER_POOL& master_pool,
                           PARAMETER_POOL& slave_pool);

}  // namespace varnoth
