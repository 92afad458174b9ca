#include "tools/import/interpolation.hpp"

#include <algorithm>

#include "orbit/general_orbit.hpp"

namespace varnoth::tools {

std::optional<INTERPOLATION> FindInterpolation(const std::string& text) {
  SCENE_ORBIT orbit;
  try {
    orbit.ParseInterpolation(text.c_str());
  } catch (const ERROR_EXCEPTION&) {
    return std::nullopt;
  }
  constexpr int MOST = 99;  // larger pieces and orders are slips
  const int order = orbit.poly_fit_order;
  const int count = orbit.support_point_count;
  if (order < 0 || order > MOST || count < 2 || count > MOST) return std::nullopt;
  INTERPOLATION found{text, text.starts_with("everett"), 1};
  if (found.needs_even_epochs) {
    if (order % 2 != 0) return std::nullopt;
    // Order 2k takes the differences of k samples on each side of the two around a time.
    found.vectors_beyond = static_cast<std::size_t>(order) / 2 + 1;
  } else if (text.starts_with("local")) {
    found.vectors_beyond = (static_cast<std::size_t>(count) + 1) / 2;
  } else if (text.starts_with("spline")) {
    found.vectors_beyond = 5;  // ends spoil that many vectors
  }
  return found;
}

}  // namespace varnoth::tools
