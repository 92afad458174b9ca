#pragma once

namespace varnoth {

/// Speed of light in vacuum in m/s (exact, definition of the metre, 1983).
inline constexpr double SPEED_OF_LIGHT = 299792458.0;
inline constexpr double PI = 3.141592653589793;

}  // namespace varnoth
