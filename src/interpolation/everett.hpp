#pragma once

#include <algorithm>

#include "foundation/matrix.hpp"
#include "interpolation/interpolation.hpp"

namespace varnoth {

/// Everett's central-difference formula of even order for equidistant series, the usual case of an
/// orbit at a fixed step (Abramowitz and Stegun, 25.2.53). A value in an interval uses the even
/// central differences at both ends of the interval.
///
///     EVERETT<double> curve;
///     curve.SetOrder(8);
///     curve.CreateQuiet(series);  // an ARRAY<POINT<double>> from index 0, at a fixed step
///     const double y = curve.GetY(12.5);
///
/// The series must start at index 0: the intervals count from the first sample, but look up
/// differences by index, so that another first index gives values of another interval.
///
/// Error: with k the order, the value is that of the polynomial through the k + 2 samples x_j
/// around the interval, so that f - p = f^(k+2)(ξ) / (k+2)! · Π (x - x_j). This holds for the
/// intervals from k/2 to last - k/2 - 1. The next interval lacks its highest difference, without a
/// report. Further out the formula of the nearest interval extrapolates, with a line at WARNING.
///
/// The derivatives at a sample divide by zero for an order of 2 or more, because the code computes
/// the derivative of each product as the product times the sum of the reciprocals of its factors.
///
/// Cost: n samples build in O(n k), an evaluation takes O(k). The series need not outlive Create.
template <class T>
class EVERETT : public INTERPOLATION<T, POINT<T>> {
 public:
  /// Order of the next Create, which must be even; -1 keeps the former one.
  void SetOrder(int wanted) override {
    if (wanted != -1) order = wanted;
  }
  /// Builds the table of differences and logs it at TRACE, one line per sample.
  void Create(const ARRAY<POINT<T>>& series) override;
  /// Throws INVALID_PARAMETER_VALUE, after a line at ALARM, for fewer than two samples, an odd or
  /// negative order (no order is set at first), and an uneven grid.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  /// Evaluations throw as GetXi does.
  T GetY(T x) const override;
  T GetDerivedY(T x) const override;
  T GetDerived2Y(T x) const override;
  /// As for every interpolator, with the same digits and log lines. Three curves of one grid, such
  /// as the coordinates of an orbit, share the factors of their differences, which cost more than
  /// the sums.
  static void EvaluateAll(const EVERETT* curves, int count, int derivative, T x, T* values);

  /// Whether all steps, and `dx`, the mean step of the last Create, agree with the first step to
  /// 1e-8 of it. Always true for fewer than three samples.
  virtual bool IsEquidistant(const ARRAY<POINT<T>>& series) const;
  /// Index of the interval of an abscissa, and the fractions of a step from its left end (r) and to
  /// its right end (s). Outside the intervals with enough samples on both sides it takes the
  /// nearest of them, with a line at WARNING; a line at DEBUG reports r and s beyond [0, 1]. Throws
  /// INVALID_PARAMETER_VALUE, after a line at ALARM, if the series has no such interval and before
  /// a successful Create.
  virtual int GetXi(T x, T& r, T& s) const;

 private:
  struct INTERVAL {
    int i;
    T r;  ///< fraction of a step from the interval's left end
    T s;  ///< and to its right end
  };
  /// The interval of an abscissa that has enough samples on both sides: as GetXi, without a call.
  bool FindInner(T x, INTERVAL& interval) const;
  /// Whether both curves have the same abscissae, order and indices.
  bool HasGridOf(const EVERETT& other) const;
  /// The values or a derivative of COUNT curves of one grid in an interval.
  template <int DERIVATIVE, int COUNT>
  static void Evaluate(const EVERETT* curves, const INTERVAL& interval, T* values);
  template <int DERIVATIVE>
  T At(T x) const;
  template <int DERIVATIVE>
  static void EvaluateAll(const EVERETT* curves, int count, T x, T* values);
  /// The last interval with enough samples to its right. Even without differences its right end
  /// must be a sample.
  int RightBound() const { return last - std::max(half, 1); }
  /// The samples from index i on: the first row of the table.
  const T* Values(int i) const { return differences.GetBlock() + (i - first); }

  MATRIX<T> differences;  ///< row k: central differences of order 2k, over the series' indices
  T x0 = 0;
  T dx = 0;
  int order = -1;  ///< for the next Create
  int half = 0;    ///< half the order of the table
  int first = 0;
  int last = 0;
  /// Steps from x0 to the first interval with enough samples on both sides, and past the last one.
  T inner_begin = 0;
  T inner_end = 0;
};

extern template class EVERETT<float>;
extern template class EVERETT<double>;

}  // namespace varnoth
