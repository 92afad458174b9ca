#pragma once

#include <cmath>

#include "foundation/constants.hpp"

namespace varnoth {

inline constexpr double TWO_PI = 6.283185307179586;

/// Longitude of a point in the equatorial plane, 0 to 2 pi rad, with its sine and cosine.
struct PLANE_ANGLE {
  double angle;
  double sine;
  double cosine;
};

/// Sets `result` to the longitude of a point; returns false, and leaves it, for coordinates that
/// are not numbers. On the y axis sine and cosine are constants, to avoid a division by x = 0.
inline bool AngleOf(double x, double y, PLANE_ANGLE& result) {
  if (x == 0.0) {
    if (std::isgreaterequal(y, 0.0)) {
      result = {1.5707963267948966, 1.0, 6.123233995736766e-17};
      return true;
    }
    if (std::isless(y, 0.0)) {
      result = {4.71238898038469, -1.0, -1.8369701987210297e-16};
      return true;
    }
    return false;
  }
  double turn = 0.0;
  if (std::isless(x, 0.0)) {
    turn = PI;
  } else if (std::isgreater(x, 0.0) && std::isless(y, 0.0)) {
    turn = TWO_PI;
  } else if (!(std::isgreater(x, 0.0) && std::isgreaterequal(y, 0.0))) {
    return false;
  }
  const double angle = std::atan(y / x) + turn;
  result = {angle, std::sin(angle), std::cos(angle)};
  return true;
}

}  // namespace varnoth
