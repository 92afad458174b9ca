#pragma once

#include "interpolation/interpolation.hpp"

namespace varnoth {

/// The Hermite polynomial through n samples that carry their derivatives, of degree 2 n - 1. For an
/// orbit these are positions and velocities. The abscissae must increase; nothing checks this.
///
///     ARRAY<DPOINT<double>> series(0, 2);
///     series.begin()[0] = {0.0, 1.0, 0.0};  // abscissa, ordinate, derivative
///     series.begin()[1] = {1.0, 2.0, 3.0};
///     HERMITE_POLY<double> curve;
///     curve.Create(series);
///     const double y = curve.GetY(0.5);
///
/// Error: f - p = f^(2n)(ξ) / (2n)! · Π (x - x_j)² (Stoer and Bulirsch, 2.1.5). A high degree
/// swings between its end samples; LOCAL_INTERPOLATION keeps it low.
///
/// An abscissa outside the samples ends the process with status 1 after a line at ALARM, because a
/// curve of this degree is useless there. A result that is not a number does so after a line at
/// WARNING.
///
/// Cost: building takes O(n), an evaluation O(n⁴). The series need not outlive Create.
template <class T>
class HERMITE_POLY : public INTERPOLATION<T, DPOINT<T>> {
 public:
  void Create(const ARRAY<DPOINT<T>>& series) override { CreateQuiet(series); }
  /// Throws INVALID_PARAMETER_VALUE, after a line at ALARM, for a series without samples.
  void CreateQuiet(const ARRAY<DPOINT<T>>& series) override;
  /// Each of these costs a full `Evaluate` over all samples. They throw as `Evaluate` does.
  T GetY(T abscissa) const override;
  T GetDerivedY(T abscissa) const override;
  T GetDerived2Y(T abscissa) const override;

  /// Value and both derivatives at an abscissa, from `order` neighbouring samples among the first
  /// n, centred on the abscissa as far as the ends allow. The caller makes sure that
  /// 1 <= order <= n <= the number of samples. Takes O(order⁴). Throws INVALID_PARAMETER_VALUE,
  /// after a line at ALARM, before a successful Create.
  ///
  /// With the Lagrange factor L of a node, its slope S at the node, and t the distance from the
  /// node, the node adds (y (1 - 2 t S) + dy t) L² to the value (Stoer and Bulirsch, 2.1.5), and
  /// the derivatives of that to the derivatives.
  virtual void Evaluate(int n, int order, T& value, T& first, T& second, T abscissa) const;

 private:
  /// The value (0), first (1) or second (2) derivative from all samples.
  T Derivative(int which, T abscissa) const;

  ARRAY<T> x;
  ARRAY<T> y;
  ARRAY<T> dy;
  int count = 0;
};

extern template class HERMITE_POLY<float>;
extern template class HERMITE_POLY<double>;

}  // namespace varnoth
