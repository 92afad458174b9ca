#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/check/pool_inputs.hpp"

namespace varnoth::tools {

/// Parts of a run, in which a failure means something different.
enum class STAGE : int {
  LOG_POOL,
  MASTER_ORBIT,
  SLAVE_ORBIT,
  PARAMETERS,
  TIMES,
  GEOMETRY,
  POLYNOMIALS
};

/// What a failure means, from the lines that the run wrote about it and its kind (empty for an
/// arithmetic fault and for a numerical kernel's end): the key, where it stands, and what to do.
FINDING ExplainFailure(STAGE stage, const std::vector<std::string>& lines,
                       const std::string& reason, const STEP_POOLS& pools);

/// What to do about a warning of the run; nothing for one that another finding tells better.
std::optional<std::string> WarningOf(const std::string& text);

}  // namespace varnoth::tools
