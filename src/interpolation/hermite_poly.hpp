#pragma once

#include "interpolation/interpolation.hpp"

namespace varnoth {

/// The Hermite polynomial through samples that carry their derivatives, of degree 2 count - 1; for
/// an orbit these are positions and velocities. It keeps copies of the samples.
///
/// A point outside the samples, or a result that is no number, ends the process with status 1
/// behind a line in the log: a curve of this degree is useless beyond its samples.
template <class T>
class HERMITE_POLY : public INTERPOLATION<T, DPOINT<T>> {
 public:
  void Create(const ARRAY<DPOINT<T>>& series) override { CreateQuiet(series); }
  /// Throws INVALID_PARAMETER_VALUE, behind a line at ALARM, for a series without samples.
  void CreateQuiet(const ARRAY<DPOINT<T>>& series) override;
  /// Each of them costs the whole of `Evaluate` with all samples.
  T GetY(T abscissa) const override;
  T GetDerivedY(T abscissa) const override;
  T GetDerived2Y(T abscissa) const override;

  /// Value and both derivatives at an abscissa from `order` neighbouring samples of the first n,
  /// centred on the abscissa as far as the ends allow; with `order` n from all of them. Takes
  /// 1 <= order <= n <= the number of samples.
  ///
  /// With the Lagrange factor L of a node, its derivatives L1, L2 and S = L1 at the node, the node
  /// adds (y (1 - 2 t S) + dy t) L² to the value, t being the way from the node (Stoer and
  /// Bulirsch, 2.1.5), and its derivatives to the others.
  virtual void Evaluate(int n, int order, T& value, T& first, T& second, T abscissa) const;

 private:
  /// The value (0) or a derivative from all samples.
  T Derivative(int which, T abscissa) const;

  ARRAY<T> x;
  ARRAY<T> y;
  ARRAY<T> dy;
  int count = 0;
};

extern template class HERMITE_POLY<float>;
extern template class HERMITE_POLY<double>;

}  // namespace varnoth
