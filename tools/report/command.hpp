#pragma once

#include <string>
#include <vector>

#include "tools/message.hpp"

namespace varnoth::tools {

struct REPORT_REQUEST {
  std::vector<std::string> places;  ///< directories of pairs and of results
  std::string out;                  ///< page to write
};

/// Writes one self-contained page about pairs, and tells what could not be read. FINDINGS if a pair
/// that was asked for has nothing to show, or if the page can't be written; failed and stopped
/// pairs of a results directory are content.
TOOL_STATUS WriteReport(const REPORT_REQUEST& request);

}  // namespace varnoth::tools
