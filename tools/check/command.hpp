#pragma once

#include <string>
#include <vector>

#include "tools/message.hpp"

namespace varnoth::tools {

/// Says whether a run with these arguments would work in this directory, and what it would take
/// without a word. Runs nothing, changes nothing. GOOD where a run would end with 0.
TOOL_STATUS CheckStep(const std::vector<std::string>& arguments, bool as_json);

}  // namespace varnoth::tools
