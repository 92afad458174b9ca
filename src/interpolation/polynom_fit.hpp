#pragma once

#include "interpolation/interpolation.hpp"
#include "interpolation/numerics/svdfit.hpp"

namespace varnoth {

/// A least-squares polynomial of a chosen order through the samples, in monomials of the abscissa
/// as it stands: an origin near the samples keeps it well conditioned. Too few samples lower the
/// order with a line at WARNING. Unweighted; by singular value decomposition.
template <class T>
class POLYNOM_FIT : public INTERPOLATION<T, POINT<T>> {
 public:
  void SetOrder(int wanted) override { order = wanted; }
  /// Logs the order and chi² at PARAMETER.
  void Create(const ARRAY<POINT<T>>& series) override;
  /// Throws INVALID_PARAMETER_VALUE, behind a line at ALARM, for no samples or a negative order.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  T GetY(T at) const override;
  T GetDerivedY(T at) const override;
  T GetDerived2Y(T at) const override;
  /// Order + 1 coefficients, constant term first.
  const T* GetCoeffs() const override { return coefficients.GetElementBase(0) + 1; }

 private:
  using ENGINE = SVDFIT<T, POLYNOM_FUNCTION<T>>;

  /// Lowers the order to what the samples allow and takes them into the working arrays.
  void Prepare(const ARRAY<POINT<T>>& series);
  void Solve(bool quiet);

  int order = 0;
  const POINT<T>* points = nullptr;  ///< first sample; not owned
  ARRAY<T> coefficients;             ///< from index 1
  ARRAY<T> x;
  ARRAY<T> y;
  ARRAY<T> sig;
  ARRAY<T> fit;
  ENGINE svdfit;
  T chisq = 0;
};

extern template class POLYNOM_FIT<float>;
extern template class POLYNOM_FIT<double>;
extern template class POLYNOM_FIT<long double>;

}  // namespace varnoth
