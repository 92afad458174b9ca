#pragma once

#include <algorithm>

#include "foundation/matrix.hpp"
#include "interpolation/interpolation.hpp"

namespace varnoth {

/// Everett's central-difference formula of even order for equidistant series, the usual case of an
/// orbit at a fixed step (Abramowitz and Stegun, 25.2.53). A value in an interval uses the samples
/// on both sides of it with the even central differences of its two ends.
///
/// With n the order, the intervals from n/2 to last - n/2 - 1 are as exact as the method is. The
/// one behind them, which raises no report yet, lacks its highest difference. Further out the
/// nearest interval is taken, and the log tells so.
///
/// At an abscissa exactly on a sample the derivatives divide by zero for an order of 2 or more: the
/// derivative of each product is the product times the sum of the reciprocals of its factors.
template <class T>
class EVERETT : public INTERPOLATION<T, POINT<T>> {
 public:
  /// Takes an even order unless it is -1.
  void SetOrder(int wanted) override {
    if (wanted != -1) order = wanted;
  }
  /// Builds the table and logs it, a column a line, at TRACE.
  void Create(const ARRAY<POINT<T>>& series) override;
  /// Throws INVALID_PARAMETER_VALUE, behind a line at ALARM, for fewer than two samples, an odd or
  /// negative order, and an uneven grid.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  T GetY(T x) const override;
  T GetDerivedY(T x) const override;
  T GetDerived2Y(T x) const override;

  /// Whether no step differs from the first one, nor the first one from the mean, by more than 1e-8
  /// of it. Needs `dx`.
  virtual bool IsEquidistant(const ARRAY<POINT<T>>& series) const;
  /// Index of the interval of an abscissa, and the fractions of a step from its left end (r) and to
  /// its right end (s). Outside the intervals with enough samples on both sides the nearest of them
  /// is taken, with a line at WARNING. Throws INVALID_PARAMETER_VALUE, behind a line at ALARM,
  /// where the series has no such interval.
  virtual int GetXi(T x, T& r, T& s) const;

 private:
  /// The same as GetXi, but for the usual case without a call.
  int Interval(T x, T& r, T& s) const;
  /// The last interval with enough samples to its right; without differences its right end must
  /// still be a sample.
  int RightBound() const { return last - std::max(half, 1); }
  /// Calls add(right, b, left, a) for every order of differences: the terms of the interval's ends,
  /// TERM objects, with the differences b and a there.
  template <class TERM, class ADD>
  void ForEachDifference(T r, T s, int i, ADD add) const;

  MATRIX<T> differences;  ///< row k: central differences of order 2k, over the series' indices
  T x0 = 0;
  T dx = 0;
  int order = -1;  ///< for the next Create
  int half = 0;    ///< half the order of the table
  int first = 0;
  int last = 0;
  /// Steps from x0 to the first and behind the last interval with enough samples on both sides.
  T inner_begin = 0;
  T inner_end = 0;
};

extern template class EVERETT<float>;
extern template class EVERETT<double>;

}  // namespace varnoth
