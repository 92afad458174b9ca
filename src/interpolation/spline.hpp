#pragma once

#include "foundation/matrix.hpp"
#include "interpolation/interpolation.hpp"

namespace varnoth {

/// The natural cubic spline through all samples, whatever their steps: pieces of third degree with
/// common first and second derivatives, and second derivative 0 at both ends. The series must
/// outlive the spline, whose nodes are read from it at each evaluation.
///
/// Outside the samples value and derivatives are 0.
template <class T>
class SPLINE : public INTERPOLATION<T, POINT<T>> {
 public:
  void Create(const ARRAY<POINT<T>>& series) override { CreateQuiet(series); }
  /// Throws INVALID_PARAMETER_VALUE, behind a line at ALARM, for fewer than three samples and for
  /// abscissae that do not increase.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  T GetY(T x) const override;
  T GetDerivedY(T x) const override;
  T GetDerived2Y(T x) const override;
  /// Null, with a line at WARNING: a spline has coefficients per interval.
  const T* GetCoeffs() const override;

 private:
  /// The interval of an abscissa and the way h from its left end; no coefficients outside the
  /// samples. A NaN is in the first interval.
  struct PLACE {
    const T* c;  ///< c[1] + c[2] h + c[3] h² + c[4] h³; null outside
    T h;
  };
  PLACE Find(T x) const;

  int count = 0;                     ///< of samples
  const POINT<T>* points = nullptr;  ///< points[1] is the first sample; not owned
  MATRIX<T> coefficients;            ///< rows 1 to count - 1, columns 1 to 4
};

extern template class SPLINE<float>;
extern template class SPLINE<double>;

}  // namespace varnoth
