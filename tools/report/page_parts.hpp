#pragma once

#include <string_view>

namespace varnoth::tools {

// Put together from page/, docs/troubleshooting.md and coastlines/land.txt when the program is
// built (make_parts.cmake).
extern const std::string_view PAGE_BEFORE_DATA;
extern const std::string_view PAGE_BEHIND_DATA;
extern const std::string_view REMEDY_PAGE;
extern const std::string_view LAND_TEXT;

}  // namespace varnoth::tools
