#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace varnoth::tools {

/// What a pool's `orbit_interpolation` asks of the state vectors.
struct INTERPOLATION {
  std::string text;  ///< as the pool has it
  bool needs_even_epochs = false;
  std::size_t vectors_beyond = 0;  ///< that a scene needs ahead of it, and behind it
};

/// Nothing if a run would not know the interpolation.
std::optional<INTERPOLATION> FindInterpolation(const std::string& text);

}  // namespace varnoth::tools
