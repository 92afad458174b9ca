#pragma once

#include "interpolation/least_squares_fit.hpp"

namespace varnoth {

/// An unweighted least-squares fit by Chebyshev polynomials T_j of the abscissa scaled to [-1, 1],
/// by singular value decomposition. The scaling keeps the fit well conditioned wherever the origin
/// is.
///
///     CHEBY_POLY<double> curve;
///     curve.SetOrder(6);
///     curve.Create(series);  // an ARRAY<POINT<double>>, in any order of the abscissae
///     const double y = curve.GetY(12.5);
///
/// Error: with k the order, the fit p of a smooth f meets f at k + 1 points z_j, so that
/// f - p = f^(k+1)(ξ) / (k+1)! · Π (x - z_j) (Davis, Interpolation and Approximation, 3.1). Outside
/// the samples the fit extrapolates without a report, and the product grows like x^(k+1).
///
/// Cost: n samples build in O(n k²), an evaluation takes O(k). The series need not outlive Create.
template <class T>
class CHEBY_POLY : public LEAST_SQUARES_FIT<T, CHEBY_POLY_FUNCTION<T>> {
 public:
  /// An evaluation before a successful Create throws INVALID_PARAMETER_VALUE, after a line at
  /// ALARM.
  T GetY(T at) const override;
  T GetDerivedY(T at) const override;
  T GetDerived2Y(T at) const override;
  /// The order + 1 coefficients c[0 … order] of Σ c[j] T_j; null before the first Create.
  const T* GetCoeffs() const override { return coefficients.begin(); }

  /// Maps the interval of the samples to [-1, 1]. If all samples have one abscissa, maps that to
  /// -1.
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
