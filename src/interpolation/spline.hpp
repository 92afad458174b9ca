#pragma once

#include "foundation/matrix.hpp"
#include "interpolation/interpolation.hpp"

namespace varnoth {

/// The natural cubic spline through n samples at any steps: pieces of third degree whose first and
/// second derivatives agree at the samples, with second derivative 0 at both ends (Press et al.,
/// 3.3).
///
///     SPLINE<double> curve;
///     curve.Create(series);  // an ARRAY<POINT<double>>, which must live as long as the curve
///     const double y = curve.GetY(12.5);
///
/// Error: with h the step, of order h⁴ f'''' away from the ends. Near an end where f'' is not 0 it
/// is of order h² f'', and falls by a factor of 0.27 per sample inwards (2 - √3 for even steps; de
/// Boor, A Practical Guide to Splines, chapter IV). Outside the samples value and derivatives
/// are 0, without a report.
///
/// Cost: building solves a full system in O(n³) time and O(n²) memory; an evaluation looks for its
/// interval from the end, in O(n). Each evaluation reads the nodes from the series, which must
/// outlive the spline.
template <class T>
class SPLINE : public INTERPOLATION<T, POINT<T>> {
 public:
  void Create(const ARRAY<POINT<T>>& series) override { CreateQuiet(series); }
  /// Throws INVALID_PARAMETER_VALUE, after a line at ALARM, for fewer than three samples and for
  /// abscissae that do not increase.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  /// An evaluation throws INVALID_PARAMETER_VALUE, after a line at ALARM, before a successful
  /// Create.
  T GetY(T x) const override;
  T GetDerivedY(T x) const override;
  T GetDerived2Y(T x) const override;
  /// Null, with a line at WARNING: a spline has coefficients per interval.
  const T* GetCoeffs() const override;

 private:
  /// The coefficients of the interval of an abscissa and the distance h from its left end. A NaN
  /// belongs to the first interval.
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
