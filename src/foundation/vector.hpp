#pragma once

#include <cmath>

#include "foundation/array.hpp"

namespace varnoth {

/// Three components of a position (m), a velocity (m/s) or the like.
template <class T>
struct VECTOR_3D {
  T x{};
  T y{};
  T z{};
};

/// An ARRAY of numbers (or texts) with element-wise operators. They pair elements by position, not
/// by index; the result has the range of the left operand. Operands of different lengths throw a
/// text that names the operator.
///
///     VECTOR<double> sum(0, 3);
///     VECTOR<double> step(1, 3);
///     std::fill(sum.begin(), sum.end(), 1.0);
///     std::fill(step.begin(), step.end(), 0.5);
///     sum += step;  // 1.5 each
template <class T>
class VECTOR : public ARRAY<T> {
 public:
  using ARRAY<T>::ARRAY;

  VECTOR& operator+=(const VECTOR& other) {
    CheckLength(other, "VECTOR operator += : vectors have different dimensions");
    return Combine(other, [](T a, T b) { return a + b; });
  }
  VECTOR& operator-=(const VECTOR& other) {
    CheckLength(other, "VECTOR operator -= : vectors have different dimensions");
    return Combine(other, [](T a, T b) { return a - b; });
  }
  /// Throws "VECTOR operator /= : division by 0.0" for a divisor of exactly zero.
  VECTOR& operator/=(T divisor) {
    if (divisor == T(0)) throw "VECTOR operator /= : division by 0.0";
    for (int i = 0; i < this->range.Count(); ++i) this->data[i] /= divisor;
    return *this;
  }
  friend VECTOR operator+(VECTOR a, const VECTOR& b) {
    a.CheckLength(b, "VECTOR operator + : vectors have different dimensions");
    return a += b;
  }
  friend VECTOR operator-(VECTOR a, const VECTOR& b) {
    a.CheckLength(b, "VECTOR operator - : vectors have different dimensions");
    return a -= b;
  }

 private:
  void CheckLength(const VECTOR& other, const char* text) const {
    if (this->range.Count() != other.range.Count()) throw text;
  }
  template <class OPERATION>
  VECTOR& Combine(const VECTOR& other, OPERATION operation) {
    for (int i = 0; i < this->range.Count(); ++i) {
      this->data[i] = operation(this->data[i], other.data[i]);
    }
    return *this;
  }
};

/// Euclidean length, in the unit of the components; sums the squares in the order x, y, z.
inline double Length(const double v[3]) {
  return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}
template <class T>
T Length(const VECTOR_3D<T>& v) {
  return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

/// Sum of products, from the last element to the first; 0 for empty vectors. Throws
/// "DotProduct: vectors have different dimensions".
template <class T>
T DotProduct(const VECTOR<T>& a, const VECTOR<T>& b) {
  if (a.GetLength() != b.GetLength()) throw "DotProduct: vectors have different dimensions";
  const T* pa = a.begin();
  const T* pb = b.begin();
  T sum = T(0);
  for (int i = a.GetLength(); i-- > 0;) sum += pa[i] * pb[i];
  return sum;
}

/// Euclidean length; sums the squares from the last element to the first.
template <class T>
T Length(const VECTOR<T>& v) {
  return std::sqrt(DotProduct(v, v));
}

/// `result` = a × b by position, in the range of `a`; `result` may be `a` or `b`. Throws a text if
/// `a` or `b` does not have three elements, or if `result` can't take the range.
template <class T>
void CrossProduct(VECTOR<T>& result, const VECTOR<T>& a, const VECTOR<T>& b) {
  if (a.GetLength() != 3) throw "CrossProduct: vector a has not dimension of 3";
  if (b.GetLength() != 3) throw "CrossProduct: vector b has not dimension of 3";
  const T* pa = a.begin();
  const T* pb = b.begin();
  const T product[3] = {pa[1] * pb[2] - pa[2] * pb[1], pa[2] * pb[0] - pa[0] * pb[2],
                        pa[0] * pb[1] - pa[1] * pb[0]};
  result.NeedRange(a.GetRange(), "CrossProduct: can not allocate vector memory");
  std::copy_n(product, 3, result.begin());
}

/// Operations on plain three-vectors for the inner loops. The result of `CrossProduct` must not be
/// one of its operands; the result of `Subtract`, a - b, may be one.
inline double DotProduct(const double a[3], const double b[3]) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline void CrossProduct(double result[3], const double a[3], const double b[3]) {
  result[0] = a[1] * b[2] - a[2] * b[1];
  result[1] = a[2] * b[0] - a[0] * b[2];
  result[2] = a[0] * b[1] - a[1] * b[0];
}
inline void Subtract(double result[3], const double a[3], const double b[3]) {
  for (int i = 0; i < 3; ++i) result[i] = a[i] - b[i];
}
inline double Distance(const double a[3], const double b[3]) {
  double difference[3] = {};
  Subtract(difference, a, b);
  return Length(difference);
}

}  // namespace varnoth
