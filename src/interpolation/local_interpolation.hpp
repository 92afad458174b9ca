#pragma once

#include <limits>

#include "interpolation/interpolation.hpp"

namespace varnoth {

/// One piece of a LOCAL_INTERPOLATION: an interpolator over a few neighbouring samples and the
/// interval for which it answers.
template <class T, class I, class P>
struct POLY_REF {
  I interpolator;
  SUB_ARRAY<P> support;  ///< a view on the series
  T t_start = 0;
  T t_stop = 0;
};

/// Interpolates a long series by overlapping pieces of low order: one interpolator I on each run of
/// `support_point_count` neighbouring samples. Piece k is built on the samples from position k on
/// and answers around their centre: two pieces meet on a sample for an even count and midway
/// between two samples for an odd one. An abscissa ahead of the first piece goes to the first, one
/// behind the last to the last, and what an interpolator does with it holds.
///
/// The series must outlive the interpolator. A copy of one that has been built throws
/// ERROR_NOT_IMPLEMENTED, since its pieces look into the series.
template <class T, class I, class P>
class LOCAL_INTERPOLATION : public INTERPOLATION<T, P> {
 public:
  void SetOrder(int wanted) override { order = wanted; }
  void SetSupportPoints(int count) override { support_point_count = count; }
  /// Builds the pieces; logs their number and, at PARAMETER, a line for each. A count of support
  /// points above the number of samples is lowered to it, with a line at WARNING. Throws
  /// INVALID_PARAMETER_VALUE, behind a line at ALARM, for an empty series, fewer than one support
  /// point, and abscissae that decrease; and what the interpolators throw.
  void Create(const ARRAY<P>& series) override { Build(series, false); }
  void CreateQuiet(const ARRAY<P>& series) override { Build(series, true); }
  T GetY(T x) const override { return PieceAt(x).GetY(x); }
  T GetDerivedY(T x) const override { return PieceAt(x).GetDerivedY(x); }
  T GetDerived2Y(T x) const override { return PieceAt(x).GetDerived2Y(x); }
  /// Coefficients of the first piece.
  const T* GetCoeffs() const override { return GetCoeffs(-std::numeric_limits<T>::infinity()); }
  /// Coefficients of the piece that answers for an abscissa.
  const T* GetCoeffs(T x) const { return PieceAt(x).GetCoeffs(); }

 private:
  void Build(const ARRAY<P>& series, bool quiet);
  /// The samples of a series that can be cut into pieces; throws for another.
  const P* SamplesOf(const ARRAY<P>& series) const;
  T EndOfPiece(const ARRAY<P>& series, int k) const;
  const I& PieceAt(T x) const;

  int support_point_count = 5;
  int order = 0;
  ARRAY<POLY_REF<T, I, P>> pieces;
};

/// The local form of an interpolator, as a template of the type of its arithmetic alone.
template <template <class> class INTERPOLATOR, template <class> class SUPPORT_POINT>
struct LOCAL {
  template <class T>
  using OF = LOCAL_INTERPOLATION<T, INTERPOLATOR<T>, SUPPORT_POINT<T>>;
};

}  // namespace varnoth
