#pragma once

#include <string>
#include <vector>

#include "tools/report/record.hpp"

namespace varnoth::tools {

/// What a page shows, as JSON that may stand in a page's element: no "<" is left in it.
/// `is_stack` chooses the page of many pairs for a single one too.
std::string PageData(const std::vector<PAIR_RECORD>& records, bool is_stack);

}  // namespace varnoth::tools
