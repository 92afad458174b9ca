#pragma once

#include "interpolation/least_squares_fit.hpp"

namespace varnoth {

/// An unweighted least-squares polynomial of a chosen order, in monomials of the abscissa as given,
/// by singular value decomposition.
///
///     POLYNOM_FIT<double> curve;
///     curve.SetOrder(2);
///     curve.Create(series);  // an ARRAY<POINT<double>>, in any order of the abscissae
///     const double constant_term = curve.GetCoeffs()[0];
///
/// Error: with k the order, the fit p of a smooth f meets f at k + 1 points z_j, so that
/// f - p = f^(k+1)(ξ) / (k+1)! · Π (x - z_j) (Davis, Interpolation and Approximation, 3.1). An
/// origin far from the samples makes the monomials nearly dependent, and SVDFIT then drops
/// directions: put the origin near the samples, or use CHEBY_POLY. Outside the samples the fit
/// extrapolates without a report, and the product grows like x^(k+1).
///
/// Cost: n samples build in O(n k²), an evaluation takes O(k). The series need not outlive Create.
template <class T>
class POLYNOM_FIT : public LEAST_SQUARES_FIT<T, POLYNOM_FUNCTION<T>> {
 public:
  /// Evaluations and GetCoeffs throw INVALID_PARAMETER_VALUE, after a line at ALARM, before a
  /// successful Create.
  T GetY(T at) const override;
  T GetDerivedY(T at) const override;
  T GetDerived2Y(T at) const override;
  /// The order + 1 coefficients c[0 … order] of Σ c[j] x^j.
  const T* GetCoeffs() const override {
    this->Degree();
    return coefficients.begin() + 1;
  }

 private:
  void Build(const ARRAY<POINT<T>>& series, bool quiet) override;

  ARRAY<T> coefficients;  ///< from index 1
};

extern template class POLYNOM_FIT<float>;
extern template class POLYNOM_FIT<double>;
extern template class POLYNOM_FIT<long double>;

}  // namespace varnoth
