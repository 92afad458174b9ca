#pragma once

#include <span>

namespace varnoth {

/// Value at x of the polynomial c[0] + c[1] x + c[2] x² + …, by nested multiplication from the last
/// coefficient on; 0 without coefficients.
///
///     const double c[] = {1, 0, 3};
///     NestedMultiplication<double>(c, 2.0);  // 13
template <class T>
T NestedMultiplication(std::span<const T> c, T x) {
  if (c.empty()) return 0;
  T value = c.back();
  for (std::size_t j = c.size() - 1; j-- > 0;) value = value * x + c[j];
  return value;
}

}  // namespace varnoth
