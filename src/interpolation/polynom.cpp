#include "interpolation/polynom.hpp"

#include <algorithm>

namespace varnoth {

template <class T>
void POLYNOM<T>::CreateQuiet(const ARRAY<POINT<T>>& series) {
  degree = series.GetLength() - 1;
  points = series.begin();
  coefficients.NeedRange(RANGE<int>(0, degree + 1), "POLYNOM: not enough memory..");
  T* const c = coefficients.begin();
  for (int j = 0; j <= degree; ++j) c[j] = points[j].y;
  for (int k = 1; k <= degree; ++k) {
    for (int j = degree; j >= k; --j) c[j] = (c[j] - c[j - 1]) / (points[j].x - points[j - k].x);
  }
}

template <class T>
const T* POLYNOM<T>::NeedCoefficients() const {
  if (degree < 0) RefuseSeries("POLYNOM", "there are no samples.");
  return coefficients.begin();
}

template <class T>
T POLYNOM<T>::GetY(T x) const {
  const T* const c = NeedCoefficients();
  T p = c[degree];
  for (int i = degree - 1; i >= 0; --i) p = p * (x - points[i].x) + c[i];
  return p;
}

template <class T>
T POLYNOM<T>::GetDerivedY(T x) const {
  const T* const c = NeedCoefficients();
  T d = 0;
  T p = c[degree];
  for (int i = degree - 1; i >= 0; --i) {
    const T t = x - points[i].x;
    d = d * t + p;
    p = p * t + c[i];
  }
  return d;
}

template <class T>
T POLYNOM<T>::GetDerived2Y(T x) const {
  const T* const c = NeedCoefficients();
  T a[3] = {c[degree], 0, 0};
  for (int j = 1; j <= degree; ++j) {
    for (int m = std::min(j, 2); m >= 1; --m) a[m] = (x - points[m].x) * a[m] + a[m - 1];
    a[0] = (x - points[0].x) * a[0] + c[degree - j];
  }
  return 2 * a[2];
}

template class POLYNOM<float>;
template class POLYNOM<double>;

}  // namespace varnoth
