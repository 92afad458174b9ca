#include "interpolation/local_interpolation.hpp"

#include <cmath>

#include "interpolation/cheby_poly.hpp"
#include "interpolation/hermite_poly.hpp"
#include "interpolation/polynom.hpp"
#include "interpolation/polynom_fit.hpp"

namespace varnoth {

template <class T, class I, class P>
const P* LOCAL_INTERPOLATION<T, I, P>::SamplesOf(const ARRAY<P>& series) const {
  const P* const p = series.begin();
  if (p == nullptr) RefuseSeries("LOCAL_INTERPOLATION", "there are no samples.");
  if (support_point_count < 1) {
    GlobalLog.set(ALARM) << "LOCAL_INTERPOLATION: no piece has " << support_point_count
                         << " support points.\n";
    throw INVALID_PARAMETER_VALUE();
  }
  for (int i = 1; i < series.GetLength(); ++i) {
    if (!std::isgreaterequal(p[i].x, p[i - 1].x)) {
      RefuseSeries("LOCAL_INTERPOLATION", "the abscissae decrease.");
    }
  }
  return p;
}

template <class T, class I, class P>
T LOCAL_INTERPOLATION<T, I, P>::EndOfPiece(const ARRAY<P>& series, int k) const {
  const P* const p = series.begin();
  const int last = series.GetLength() - 1;
  const int c = support_point_count;
  if (c > last) return p[last].x;
  if (c % 2 == 0) return p[k + c / 2].x;
  const int m = k + (c - 1) / 2;
  // Only a piece of one support point can lack a sample after its centre.
  return m < last ? p[m].x + (p[m + 1].x - p[m].x) * static_cast<T>(0.5) : p[last].x;
}

template <class T, class I, class P>
void LOCAL_INTERPOLATION<T, I, P>::Build(const ARRAY<P>& series, bool quiet) {
  const P* const samples = SamplesOf(series);
  const int n = series.GetLength();
  if (support_point_count > n) {
    GlobalLog.set(WARNING) << "LOCAL_INTERPOLATION: change support_point_count from "
                           << support_point_count << " to " << n << "\n";
    support_point_count = n;
  }
  const int c = support_point_count;
  const RANGE<int> shape(0, n + 1 - c);
  GlobalLog.set(PARAMETER) << "LOCAL_INTERPOLATION: polynom count; " << shape.Count() << "\n";
  if (!(pieces.GetRange() == shape) && pieces.Create(shape) != ARRAY_OK) throw ERROR_NO_MEMORY();

  POLY_REF<T, I, P>* const piece = pieces.GetBase();
  for (int k = 0; k < shape.Count(); ++k) {
    piece[k].support.Attach(series, RANGE<int>(0, c), k);
    piece[k].t_start = k == 0 ? samples[0].x : piece[k - 1].t_stop;
    piece[k].t_stop = EndOfPiece(series, k);
    if (quiet) continue;
    GlobalLog.set(PARAMETER) << "idx_start=" << k << " idx_stop=" << k + c - 1
                             << " t_start=" << piece[k].t_start << " t_stop=" << piece[k].t_stop
                             << "\n";
  }
  for (int k = 0; k < shape.Count(); ++k) {
    piece[k].interpolator.SetOrder(order);
    if (quiet) {
      piece[k].interpolator.CreateQuiet(piece[k].support);
    } else {
      piece[k].interpolator.Create(piece[k].support);
    }
  }
}

template <class T, class I, class P>
const I& LOCAL_INTERPOLATION<T, I, P>::PieceAt(T x) const {
  const POLY_REF<T, I, P>* const piece = pieces.GetBase();
  const int count = pieces.GetLength();
  if (count == 0) RefuseSeries("LOCAL_INTERPOLATION", "there are no samples.");
  for (int k = 0; k < count; ++k) {
    if (std::islessequal(piece[k].t_start, x) && std::islessequal(x, piece[k].t_stop)) {
      return piece[k].interpolator;
    }
  }
  return piece[std::isless(x, piece[0].t_start) ? 0 : count - 1].interpolator;
}

template class LOCAL_INTERPOLATION<float, POLYNOM<float>, POINT<float>>;
template class LOCAL_INTERPOLATION<float, POLYNOM_FIT<float>, POINT<float>>;
template class LOCAL_INTERPOLATION<float, CHEBY_POLY<float>, POINT<float>>;
template class LOCAL_INTERPOLATION<float, HERMITE_POLY<float>, DPOINT<float>>;
template class LOCAL_INTERPOLATION<double, POLYNOM<double>, POINT<double>>;
template class LOCAL_INTERPOLATION<double, POLYNOM_FIT<double>, POINT<double>>;
template class LOCAL_INTERPOLATION<double, CHEBY_POLY<double>, POINT<double>>;
template class LOCAL_INTERPOLATION<double, HERMITE_POLY<double>, DPOINT<double>>;

}  // namespace varnoth
