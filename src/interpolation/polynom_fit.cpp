#include "interpolation/polynom_fit.hpp"

#include <algorithm>

namespace varnoth {

namespace {

constexpr const char* NO_MEMORY = "POLYNOM: not enough memory..";

template <class T>
void Size(ARRAY<T>& array, int first, int count) {
  if (array.Resize(RANGE<int>(first, count)) != ARRAY_OK) throw NO_MEMORY;
}

}  // namespace

template <class T>
void POLYNOM_FIT<T>::Prepare(const ARRAY<POINT<T>>& series) {
  this->NeedSamples(series, "POLYFIT");
  if (order < 0) {
    GlobalLog.set(ALARM) << "POLYFIT: there is no polynomial of order " << order << "\n";
    throw INVALID_PARAMETER_VALUE();
  }
  const int n = series.GetLength();
  if (n <= order) {
    GlobalLog.set(WARNING) << "POLYFIT: reduce polynomial fit order " << order << " -> " << n - 1
                           << "\n";
    order = n - 1;
  }
  points = series.GetElementBase(0);
  Size(coefficients, 0, order + 2);
  for (ARRAY<T>* array : {&x, &y, &sig}) Size(*array, 1, n);
  Size(fit, 1, order + 1);
  for (int i = 0; i < n; ++i) {
    x.GetElementBase(0)[i] = points[i].x;
    y.GetElementBase(0)[i] = points[i].y;
    sig.GetElementBase(0)[i] = 1;
  }
  svdfit.Resize(n, order + 1);
}

template <class T>
void POLYNOM_FIT<T>::Solve(bool quiet) {
  const auto solve = quiet ? &ENGINE::FitQuiet : &ENGINE::Fit;
  (svdfit.*solve)(x.GetBase(), y.GetBase(), sig.GetBase(), x.GetLength(), fit.GetBase(), order + 1,
                  chisq);
  std::copy_n(fit.GetElementBase(0), order + 1, coefficients.GetElementBase(0) + 1);
}

template <class T>
void POLYNOM_FIT<T>::Create(const ARRAY<POINT<T>>& series) {
  Prepare(series);
  GlobalLog.set(PARAMETER) << "POLYFIT: polynomial fit order = " << order << "\n";
  Solve(false);
  GlobalLog.set(PARAMETER) << "POLYFIT: chi^2 = " << chisq << "\n";
}

template <class T>
void POLYNOM_FIT<T>::CreateQuiet(const ARRAY<POINT<T>>& series) {
  Prepare(series);
  Solve(true);
}

template <class T>
T POLYNOM_FIT<T>::GetY(T at) const {
  const T* const c = coefficients.GetElementBase(0);
  T p = c[order + 1];
  for (int j = order; j >= 1; --j) p = p * at + c[j];
  return p;
}

template <class T>
T POLYNOM_FIT<T>::GetDerivedY(T at) const {
  const T* const c = coefficients.GetElementBase(0);
  T d = 0;
  T p = c[order + 1];
  for (int j = order; j >= 1; --j) {
    d = d * at + p;
    p = p * at + c[j];
  }
  return d;
}

template <class T>
T POLYNOM_FIT<T>::GetDerived2Y(T at) const {
  const T* const c = coefficients.GetElementBase(0);
  T a[3] = {c[order + 1], 0, 0};
  for (int j = 1; j <= order; ++j) {
    for (int k = std::min(j, 2); k >= 1; --k) a[k] = a[k] * at + a[k - 1];
    a[0] = a[0] * at + c[order + 1 - j];
  }
  return a[2] + a[2];
}

template class POLYNOM_FIT<float>;
template class POLYNOM_FIT<double>;
template class POLYNOM_FIT<long double>;

}  // namespace varnoth
