#pragma once

#include "interpolation/least_squares_fit.hpp"

namespace varnoth {

/// A least-squares fit by Chebyshev polynomials T_j on the abscissa scaled to [-1, 1]. Too few
/// samples lower the order with a line at WARNING. Unweighted; by singular value decomposition.
template <class T>
class CHEBY_POLY : public LEAST_SQUARES_FIT<T, CHEBY_POLY_FUNCTION<T>> {
 public:
  T GetY(T at) const override;
  T GetDerivedY(T at) const override;
  T GetDerived2Y(T at) const override;
  /// Order + 1 coefficients of the sum of c[j] T_j.
  const T* GetCoeffs() const override { return coefficients.begin(); }

  /// Maps the interval of the samples to [-1, 1].
  virtual T Scale(T at) const { return (at - x_min) / half_range - 1; }

 private:
  void Build(const ARRAY<POINT<T>>& series, bool quiet) override;
  T Sum(const ARRAY<T>& series_coefficients, T at) const;

  ARRAY<T> coefficients;
  ARRAY<T> first_derivative;
  ARRAY<T> second_derivative;
  T x_min = 0;
  T x_max = 0;
  T half_range = 1;
};

extern template class CHEBY_POLY<float>;
extern template class CHEBY_POLY<double>;

}  // namespace varnoth
