#pragma once

#include <limits>

#include "interpolation/interpolation.hpp"

namespace varnoth {

/// One piece of a LOCAL_INTERPOLATION: an interpolator over a few neighbouring samples and the
/// interval that it covers.
template <class T, class I, class P>
struct POLY_REF {
  I interpolator;
  SUB_ARRAY<P> support;  ///< a view on the series
  T t_start = 0;
  T t_stop = 0;
};

/// Interpolates a long series by overlapping pieces of low order: one interpolator I on each run of
/// c neighbouring samples, the support points.
///
///     LOCAL<POLYNOM, POINT>::OF<double> curve;
///     curve.SetSupportPoints(4);
///     curve.CreateQuiet(series);  // an ARRAY<POINT<double>>
///     const double y = curve.GetY(12.5);
///
/// Piece k is built on the samples at positions k to k + c - 1 and covers the abscissae around
/// their centre: two pieces meet on a sample for an even c and midway between two samples for an
/// odd one. There the value may jump, since neighbouring pieces share no condition. An abscissa
/// before the first piece goes to the first piece, any other outside the pieces to the last; the
/// interpolator I decides what becomes of it.
///
/// Error: that of I on c samples. Centring keeps the product of the distances small, but not in the
/// outer c/2 intervals at both ends.
///
/// Cost: n samples build n - c + 1 pieces. An evaluation looks for its piece in O(n) and costs one
/// evaluation of I on c samples.
///
/// The series must outlive the interpolator. Copying a built interpolator throws
/// ERROR_NOT_IMPLEMENTED, after a line at ALARM, because its pieces are views on the series.
template <class T, class I, class P>
class LOCAL_INTERPOLATION : public INTERPOLATION<T, P> {
 public:
  /// Order of the pieces, if I has one; 0 at first.
  void SetOrder(int wanted) override { order = wanted; }
  /// Samples per piece, 5 at first. Create lowers a count above the number of samples to that
  /// number, with a line at WARNING, and the lower count stays.
  void SetSupportPoints(int count) override { support_point_count = count; }
  /// Builds the pieces; logs their number and a line for each at PARAMETER.
  void Create(const ARRAY<P>& series) override { Build(series, false); }
  /// Logs the number of pieces alone. Throws INVALID_PARAMETER_VALUE, after a line at ALARM, for an
  /// empty series, fewer than one support point, and abscissae that decrease or are NaN;
  /// ERROR_NO_MEMORY; and what I throws.
  void CreateQuiet(const ARRAY<P>& series) override { Build(series, true); }
  /// Evaluations and GetCoeffs throw INVALID_PARAMETER_VALUE, after a line at ALARM, without
  /// pieces, and what I throws.
  T GetY(T x) const override { return PieceAt(x).GetY(x); }
  T GetDerivedY(T x) const override { return PieceAt(x).GetDerivedY(x); }
  T GetDerived2Y(T x) const override { return PieceAt(x).GetDerived2Y(x); }
  /// Coefficients of the first piece, in the meaning of I.
  const T* GetCoeffs() const override { return GetCoeffs(-std::numeric_limits<T>::infinity()); }
  /// Coefficients of the piece that covers an abscissa.
  const T* GetCoeffs(T x) const { return PieceAt(x).GetCoeffs(); }

 private:
  void Build(const ARRAY<P>& series, bool quiet);
  /// The samples of a series; throws if they make no pieces.
  const P* SamplesOf(const ARRAY<P>& series) const;
  T EndOfPiece(const ARRAY<P>& series, int k) const;
  const I& PieceAt(T x) const;

  int support_point_count = 5;
  int order = 0;
  ARRAY<POLY_REF<T, I, P>> pieces;
};

/// The local form of an interpolator, as a template of its arithmetic type alone:
/// LOCAL<HERMITE_POLY, DPOINT>::OF<double>.
template <template <class> class INTERPOLATOR, template <class> class SUPPORT_POINT>
struct LOCAL {
  template <class T>
  using OF = LOCAL_INTERPOLATION<T, INTERPOLATOR<T>, SUPPORT_POINT<T>>;
};

}  // namespace varnoth
