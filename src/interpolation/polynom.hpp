#pragma once

#include "interpolation/interpolation.hpp"

namespace varnoth {

/// The polynomial through all n samples, of degree n - 1, in Newton's divided-difference form
/// (Stoer and Bulirsch, 2.1.3).
///
///     POLYNOM<double> curve;
///     curve.Create(series);  // an ARRAY<POINT<double>>, which must live as long as the curve
///     const double y = curve.GetY(12.5);
///
/// Error: f - p = f^(n)(ξ) / n! · Π (x - x_j). On an even grid the product is largest near the
/// ends, and a high degree swings there (Runge); LOCAL_INTERPOLATION keeps the degree low. Outside
/// the samples the polynomial extrapolates without a report, and the product grows like x^n.
///
/// Cost: building takes O(n²), an evaluation O(n). Each evaluation reads the nodes from the series,
/// which must outlive the polynomial. Nothing detects repeated abscissae: they divide by zero and
/// leave infinities or NaN.
template <class T>
class POLYNOM : public INTERPOLATION<T, POINT<T>> {
 public:
  void Create(const ARRAY<POINT<T>>& series) override { CreateQuiet(series); }
  /// Accepts a series without samples; the evaluations then throw.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  /// An evaluation throws INVALID_PARAMETER_VALUE, after a line at ALARM, if there are no samples.
  T GetY(T x) const override;
  T GetDerivedY(T x) const override;
  /// The second derivative up to degree 3. From degree 4 on the result is not the second
  /// derivative, because the recurrence uses the first three nodes throughout. It stays so because
  /// existing results depend on it.
  T GetDerived2Y(T x) const override;
  /// The n coefficients c[j] of Σ c[j] (x - x_0) … (x - x_(j-1)); null without samples.
  const T* GetCoeffs() const override { return coefficients.begin(); }

 private:
  const T* NeedCoefficients() const;

  int degree = -1;
  ARRAY<T> coefficients;
  const POINT<T>* points = nullptr;  ///< first element of the series; not owned
};

extern template class POLYNOM<float>;
extern template class POLYNOM<double>;

}  // namespace varnoth
