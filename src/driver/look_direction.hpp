#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Returns the look direction of the run, -1.0 (left) or +1.0 (right), and logs it. If the two
/// scenes agree, it is theirs. If they differ, it trusts neither: it places the scene's mid point
/// on both sides of the track and takes the side that lands nearer to the centre in the master
/// pool, or left if both are equally near. Throws what the geolocation, the orbit and the pools
/// throw.
double settle_look_direction(const SCENE& scene, PARAMETER_POOL& master_pool,
                             PARAMETER_POOL& slave_pool);

}  // namespace varnoth
