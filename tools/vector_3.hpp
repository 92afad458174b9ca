#pragma once

#include <array>
#include <cmath>

namespace varnoth::tools {

/// A place or direction, Earth-fixed.
using VECTOR_3 = std::array<double, 3>;

inline VECTOR_3 ToVector(const double (&values)[3]) { return {values[0], values[1], values[2]}; }

inline VECTOR_3 Difference(const VECTOR_3& a, const VECTOR_3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline VECTOR_3 Scaled(const VECTOR_3& a, double factor) {
  return {a[0] * factor, a[1] * factor, a[2] * factor};
}

inline double Dot(const VECTOR_3& a, const VECTOR_3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline VECTOR_3 Cross(const VECTOR_3& a, const VECTOR_3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Norm(const VECTOR_3& a) { return std::sqrt(Dot(a, a)); }

inline double Distance(const VECTOR_3& a, const VECTOR_3& b) { return Norm(Difference(a, b)); }

}  // namespace varnoth::tools
