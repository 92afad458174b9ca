#pragma once

#include "interpolation/least_squares_fit.hpp"

namespace varnoth {

/// A least-squares polynomial of a chosen order through the samples, in monomials of the abscissa
/// as it stands: an origin near the samples keeps it well conditioned. Too few samples lower the
/// order with a line at WARNING. Unweighted; by singular value decomposition.
template <class T>
class POLYNOM_FIT : public LEAST_SQUARES_FIT<T, POLYNOM_FUNCTION<T>> {
 public:
  T GetY(T at) const override;
  T GetDerivedY(T at) const override;
  T GetDerived2Y(T at) const override;
  /// Order + 1 coefficients, constant term first.
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
