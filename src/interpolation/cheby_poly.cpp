#include "interpolation/cheby_poly.hpp"

#include <algorithm>

namespace varnoth {

namespace {

constexpr const char* NO_MEMORY = "CHEBY_POLY::Create: not enough memory.";

template <class T>
void Size(ARRAY<T>& array, int first, int count) {
  if (array.Resize(RANGE<int>(first, count)) != ARRAY_OK) throw NO_MEMORY;
}

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
void CHEBY_POLY<T>::Prepare(const ARRAY<POINT<T>>& series) {
  this->NeedSamples(series, "CHEBY_POLY::Create");
  if (order < 0) {
    GlobalLog.set(ALARM) << "CHEBY_POLY::Create: there is no polynomial of order " << order << "\n";
    throw INVALID_PARAMETER_VALUE();
  }
  const int n = series.GetLength();
  points = series.GetElementBase(0);
  const auto [least, largest] = std::minmax_element(
      points, points + n, [](const POINT<T>& a, const POINT<T>& b) { return a.x < b.x; });
  x_min = least->x;
  x_max = largest->x;
  half_range = x_max == x_min ? static_cast<T>(1) : (x_max - x_min) * static_cast<T>(0.5);
  if (n <= order) {
    GlobalLog.set(WARNING) << "CHEBY_POLY::Create: reduce polynomial fit order " << order << "->"
                           << n - 1 << "\n";
    order = n - 1;
  }
  for (ARRAY<T>* array : {&coefficients, &first_derivative, &second_derivative}) {
    Size(*array, 0, order + 1);
  }
  for (ARRAY<T>* array : {&x, &y, &sig}) Size(*array, 1, n);
  Size(fit, 1, order + 1);
  for (int i = 0; i < n; ++i) {
    x.GetElementBase(0)[i] = Scale(points[i].x);
    y.GetElementBase(0)[i] = points[i].y;
    sig.GetElementBase(0)[i] = 1;
  }
  svdfit.Resize(n, order + 1);
}

template <class T>
void CHEBY_POLY<T>::Solve(bool quiet) {
  const auto solve = quiet ? &ENGINE::FitQuiet : &ENGINE::Fit;
  (svdfit.*solve)(x.GetBase(), y.GetBase(), sig.GetBase(), x.GetLength(), fit.GetBase(), order + 1,
                  chisq);
  std::copy_n(fit.GetElementBase(0), order + 1, coefficients.GetElementBase(0));
  Derive(coefficients.GetElementBase(0), first_derivative.GetElementBase(0), order);
  Derive(first_derivative.GetElementBase(0), second_derivative.GetElementBase(0), order);
}

template <class T>
void CHEBY_POLY<T>::Create(const ARRAY<POINT<T>>& series) {
  Prepare(series);
  Solve(false);
  GlobalLog.set(PARAMETER) << "CHEBY_POLY::Create: chi^2 = " << chisq << "\n";
}

template <class T>
void CHEBY_POLY<T>::CreateQuiet(const ARRAY<POINT<T>>& series) {
  Prepare(series);
  Solve(true);
}

template <class T>
T CHEBY_POLY<T>::Sum(const ARRAY<T>& series_coefficients, T at) const {
  const T* const c = series_coefficients.GetElementBase(0);
  const T s = Scale(at);
  T below = 1;
  T current = s;
  T sum = c[0];
  for (int j = 1; j <= order; ++j) {
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
