#pragma once

#include "pool/parameter_pool.hpp"
#include "tools/check/pool_inputs.hpp"

namespace varnoth::tools {

/// Does in another process what a run does, by the run's own code, up to the results: they are not
/// written. Whether it would reach its end; tells why not, and what `doubts.hpp` finds on the way.
bool Rehearse(const STEP_POOLS& pools, const STEP_SETTINGS& settings, FINDING_LIST& findings);

/// The scene's height (m) as a run takes it. Throws what the pool throws.
double HeightOf(const STEP_SETTINGS& settings, PARAMETER_POOL& insar);

}  // namespace varnoth::tools
