#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "foundation/array.hpp"

namespace varnoth::test {

/// A derivative (0: the value) of 1 - x/2 + x²/3 - … up to x^degree, power by power.
inline long double Known(int degree, int derivative, long double x) {
  long double sum = 0;
  for (int j = derivative; j <= degree; ++j) {
    const long double falling = std::tgamma(j + 1.0L) / std::tgamma(j - derivative + 1.0L);
    sum += (j % 2 == 0 ? 1 : -1) * falling / (j + 1) * std::pow(x, j - derivative);
  }
  return sum;
}

/// Distance of a result from the known value, in roundings of T.
template <class T>
double Roundings(T got, long double known) {
  return static_cast<double>(std::fabs(got - known) / std::numeric_limits<T>::epsilon());
}

/// The samples of f at the abscissae, from index `first` on.
template <class T, class F>
ARRAY<POINT<T>> Series(const std::vector<T>& abscissae, F f, int first = 0) {
  ARRAY<POINT<T>> series(first, static_cast<int>(abscissae.size()));
  POINT<T>* next = series.GetElementBase(0);
  for (const T x : abscissae) *next++ = POINT<T>(x, static_cast<T>(f(x)));
  return series;
}

/// Samples P of zeros at the abscissae.
template <class P>
ARRAY<P> At(const std::vector<double>& abscissae) {
  ARRAY<P> series(0, static_cast<int>(abscissae.size()));
  P* next = series.GetElementBase(0);
  for (const double x : abscissae) next++->x = x;
  return series;
}

/// What an interpolator gives at an abscissa: the value and its derivatives.
template <class INTERPOLATOR, class T>
std::array<T, 3> Values(const INTERPOLATOR& interpolator, T x) {
  return {interpolator.GetY(x), interpolator.GetDerivedY(x), interpolator.GetDerived2Y(x)};
}

/// They are the known ones but for so many roundings each.
template <class T>
void ExpectKnown(const std::array<T, 3>& got, int degree, T x,
                 const std::array<double, 3>& limits) {
  for (int d = 0; d < 3; ++d) {
    EXPECT_LT(Roundings(got.data()[d], Known(degree, d, x)), limits.data()[d])
        << degree << " " << x;
  }
}

template <class INTERPOLATOR>
INTERPOLATOR Built(int order, const ARRAY<typename INTERPOLATOR::SAMPLE>& series) {
  INTERPOLATOR interpolator;
  interpolator.SetOrder(order);
  interpolator.CreateQuiet(series);
  return interpolator;
}

}  // namespace varnoth::test
