#include "interpolation/cheby_poly.hpp"

#include <algorithm>

namespace varnoth {

namespace {

/// Coefficients d of the derivative of the series c of order n:
/// d[j] = d[j+2] + 2 (j+1) c[j+1], with half of d[2] in the constant term.
template <class T>
void Derive(const T* c, T* d, int n) {
  d[n] = 0;
  if (n > 1) d[n - 1] = static_cast<T>(2 * n) * c[n];
  for (int j = n - 2; j >= 1; --j) d[j] = static_cast<T>(2 * (j + 1)) * c[j + 1] + d[j + 2];
  if (n == 1) d[0] = c[1];
  if (n >= 2) d[0] = static_cast<T>(0.5) * d[2] + c[1];
}

}  // namespace

template <class T>
void CHEBY_POLY<T>::Build(const ARRAY<POINT<T>>& series, bool quiet) {
  constexpr const char* NO_MEMORY = "CHEBY_POLY::Create: not enough memory.";
  this->UseSeries(series, "CHEBY_POLY::Create", "->");
  const auto [least, largest] =
      std::minmax_element(this->points, this->points + this->count,
                          [](const POINT<T>& a, const POINT<T>& b) { return a.x < b.x; });
  x_min = least->x;
  x_max = largest->x;
  half_range = x_max == x_min ? static_cast<T>(1) : (x_max - x_min) * static_cast<T>(0.5);
  for (ARRAY<T>* array : {&coefficients, &first_derivative, &second_derivative}) {
    this->Size(*array, 0, this->order + 1, NO_MEMORY);
  }
  T* const c = coefficients.begin();
  this->Solve(
      quiet, c, [this](T at) { return Scale(at); }, NO_MEMORY);
  Derive(c, first_derivative.begin(), this->order);
  Derive(first_derivative.begin(), second_derivative.begin(), this->order);
  if (!quiet) GlobalLog.set(PARAMETER) << "CHEBY_POLY::Create: chi^2 = " << this->chisq << "\n";
}

template <class T>
T CHEBY_POLY<T>::Sum(const ARRAY<T>& series_coefficients, T at) const {
  const int n = this->Degree();
  const T* const c = series_coefficients.begin();
  const T s = Scale(at);
  T below = 1;
  T current = s;
  T sum = c[0];
  for (int j = 1; j <= n; ++j) {
    sum += c[j] * current;
    const T above = 2 * s * current - below;
    below = current;
    current = above;
  }
  return sum;
}

template <class T>
T CHEBY_POLY<T>::GetY(T at) const {
  return Sum(coefficients, at);
}

template <class T>
T CHEBY_POLY<T>::GetDerivedY(T at) const {
  return Sum(first_derivative, at) / half_range;
}

template <class T>
T CHEBY_POLY<T>::GetDerived2Y(T at) const {
  return Sum(second_derivative, at) / (half_range * half_range);
}

template class CHEBY_POLY<float>;
template class CHEBY_POLY<double>;

}  // namespace varnoth
