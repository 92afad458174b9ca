#include "interpolation/polynom_fit.hpp"

#include <algorithm>

#include "interpolation/numerics/nested_multiplication.hpp"

namespace varnoth {

template <class T>
void POLYNOM_FIT<T>::Build(const ARRAY<POINT<T>>& series, bool quiet) {
  constexpr const char* NO_MEMORY = "POLYNOM: not enough memory..";
  this->UseSeries(series, "POLYFIT", " -> ");
  if (!quiet) {
    GlobalLog.set(PARAMETER) << "POLYFIT: polynomial fit order = " << this->order << "\n";
  }
  this->Size(coefficients, 0, this->order + 2, NO_MEMORY);
  this->Solve(
      quiet, coefficients.begin() + 1, [](T at) { return at; }, NO_MEMORY);
  if (!quiet) GlobalLog.set(PARAMETER) << "POLYFIT: chi^2 = " << this->chisq << "\n";
}

template <class T>
T POLYNOM_FIT<T>::GetY(T at) const {
  const auto terms = static_cast<std::size_t>(this->Degree()) + 1;
  return NestedMultiplication<T>({coefficients.begin() + 1, terms}, at);
}

template <class T>
T POLYNOM_FIT<T>::GetDerivedY(T at) const {
  const int n = this->Degree();
  const T* const c = coefficients.begin();
  T d = 0;
  T p = c[n + 1];
  for (int j = n; j >= 1; --j) {
    d = d * at + p;
    p = p * at + c[j];
  }
  return d;
}

template <class T>
T POLYNOM_FIT<T>::GetDerived2Y(T at) const {
  const int n = this->Degree();
  const T* const c = coefficients.begin();
  T a[3] = {c[n + 1], 0, 0};
  for (int j = 1; j <= n; ++j) {
    for (int k = std::min(j, 2); k >= 1; --k) a[k] = a[k] * at + a[k - 1];
    a[0] = a[0] * at + c[n + 1 - j];
  }
  return a[2] + a[2];
}

template class POLYNOM_FIT<float>;
template class POLYNOM_FIT<double>;
template class POLYNOM_FIT<long double>;

}  // namespace varnoth
