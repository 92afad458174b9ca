#pragma once

#include "tools/check/pool_inputs.hpp"

namespace varnoth::tools {

/// Does in another process what a run does, by the run's own code, up to the results: they are not
/// written. Whether it would reach its end; tells why not, and what `doubts.hpp` finds on the way.
bool Rehearse(const STEP_POOLS& pools, const STEP_SETTINGS& settings, FINDING_LIST& findings);

}  // namespace varnoth::tools
