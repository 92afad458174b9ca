#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth {

/// Writes the thirty-nine results into the InSAR pool object, in a fixed order; the pool's file
/// changes with the pool's update. Replaces the results of an earlier run in place. Throws what the
/// pool throws, and ERROR_ARGUMENT, after a line at ALARM, for a look direction that is neither
/// -1.0 nor 1.0.
void annotate_results(const RESULTS& results, PARAMETER_POOL_READ_WRITE_CHANGE& insar_pool);

}  // namespace varnoth
