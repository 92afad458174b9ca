#include "interpolation/spline.hpp"

#include <algorithm>
#include <cmath>

#include "interpolation/numerics/gaussj.hpp"

namespace varnoth {

template <class T>
void SPLINE<T>::CreateQuiet(const ARRAY<POINT<T>>& series) {
  count = 0;
  const int n = series.GetLength();
  if (n < 3) RefuseSeries("SPLINE::Create", "more than 2 values needed.");
  const POINT<T>* const p = series.GetElementBase(1);
  ARRAY<T> steps(1, n - 1);
  T* const h = steps.GetBase();
  for (int i = 1; i < n; ++i) {
    h[i] = p[i + 1].x - p[i].x;
    if (!std::isgreater(h[i], T(0))) {
      RefuseSeries("SPLINE::Create", "the abscissae do not increase.");
    }
  }

  // Equal slopes of neighbouring pieces at the inner samples give the second derivatives there.
  const int m = n - 2;
  MATRIX<double> system(RANGE<int>(1, m), RANGE<int>(1, m));
  MATRIX<double> right_side(RANGE<int>(1, m), RANGE<int>(1, 1));
  std::fill(system.begin(), system.end(), 0.0);
  double* const* const a = system.Rows();
  double* const* const b = right_side.Rows();
  for (int r = 1; r <= m; ++r) {
    if (r > 1) a[r][r - 1] = h[r];
    a[r][r] = 2 * (h[r] + h[r + 1]);
    if (r < m) a[r][r + 1] = h[r + 1];
    b[r][1] = -6 / h[r] * (p[r + 1].y - p[r].y) + 6 / h[r + 1] * (p[r + 2].y - p[r + 1].y);
  }
  gaussj(a, m, b, 1);
  const auto second = [&](int sample) {
    return sample == 1 || sample == n ? T(0) : static_cast<T>(b[sample - 1][1]);
  };

  coefficients.NeedRanges(RANGE<int>(1, n - 1), RANGE<int>(1, 4));
  T* const* const row = coefficients.Rows();
  for (int r = 1; r < n; ++r) {
    const T left = second(r);
    const T right = second(r + 1);
    T* const c = row[r];
    c[1] = p[r].y;
    c[2] = (p[r + 1].y - p[r].y) / h[r] - h[r] / 6 * (2 * left + right);
    c[3] = left * static_cast<T>(0.5);
    c[4] = (right - left) / 6 / h[r];
  }
  points = p;
  count = n;
}

template <class T>
typename SPLINE<T>::PLACE SPLINE<T>::Find(T x) const {
  if (count == 0) RefuseSeries("SPLINE", "there are no samples.");
  if (std::isless(x, points[1].x) || std::isgreater(x, points[count].x)) return {nullptr, 0};
  int r = count - 1;
  while (r > 1 && !std::isgreaterequal(x, points[r].x)) --r;
  return {coefficients.Rows()[r], x - points[r].x};
}

template <class T>
T SPLINE<T>::GetY(T x) const {
  const auto [c, h] = Find(x);
  return c == nullptr ? T(0) : h * c[2] + c[1] + c[3] * (h * h) + h * (h * h) * c[4];
}

template <class T>
T SPLINE<T>::GetDerivedY(T x) const {
  const auto [c, h] = Find(x);
  return c == nullptr ? T(0) : (c[3] + c[3]) * h + c[2] + 3 * c[4] * (h * h);
}

template <class T>
T SPLINE<T>::GetDerived2Y(T x) const {
  const auto [c, h] = Find(x);
  return c == nullptr ? T(0) : c[3] + c[3] + 6 * c[4] * h;
}

template <class T>
const T* SPLINE<T>::GetCoeffs() const {
  GlobalLog.set(WARNING) << "SPLINE::GetCoeffs() makes no sense";
  return nullptr;
}

template class SPLINE<float>;
template class SPLINE<double>;

}  // namespace varnoth
