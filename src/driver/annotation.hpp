#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth {

/// Writes the thirty-nine results into the InSAR pool object, in their fixed order; the pool's file
/// changes with the pool's update. A run over a pool that holds results of an earlier one replaces
/// them in place. Throws what the pool throws.
void annotate_results(const RESULTS& results, PARAMETER_POOL_READ_WRITE_CHANGE& insar_pool);

}  // namespace varnoth
