#include "interpolation/numerics/svdfit.hpp"

#include <algorithm>

#include "foundation/errors.hpp"
#include "interpolation/numerics/svd.hpp"

namespace varnoth {

namespace {

/// Singular values below this part of the largest one count as 0.
template <class T>
constexpr T TOLERANCE = 0;
template <>
constexpr float TOLERANCE<float> = 1e-5F;
template <>
constexpr double TOLERANCE<double> = 1e-14;
template <>
constexpr long double TOLERANCE<long double> = 1e-32L;

}  // namespace

template <class T, class F>
void SVDFIT<T, F>::Resize(int data_count, int parameter_count) {
  if (data_count == ndata && parameter_count == ma) return;
  const RANGE<int> data(1, data_count);
  const RANGE<int> parameters(1, parameter_count);
  w.NeedRange(parameters);
  afunc.NeedRange(parameters);
  b.NeedRange(data);
  u.NeedRanges(data, parameters);
  v.NeedRanges(parameters, parameters);
  ndata = data_count;
  ma = parameter_count;
}

template <class T, class F>
void SVDFIT<T, F>::Fit(const T* x, const T* y, const T* sig, int data_count, T* a,
                       int parameter_count, T& chi_square) {
  Resize(data_count, parameter_count);
  T* const* const rows = u.Rows();
  T* const right = b.GetBase();
  T* const basis = afunc.GetBase();
  T* const values = w.GetBase();
  for (int i = 1; i <= ndata; ++i) {
    F::Fill(x[i], basis, ma);
    const T weight = 1 / sig[i];
    for (int j = 1; j <= ma; ++j) rows[i][j] = basis[j] * weight;
    right[i] = y[i] * weight;
  }
  svdcmp(rows, ndata, ma, values, v.Rows());
  const T largest = std::max(static_cast<T>(0), *std::max_element(values + 1, values + ma + 1));
  for (int j = 1; j <= ma; ++j) {
    if (values[j] < TOLERANCE<T> * largest) values[j] = 0;
  }
  svbksb<T>(rows, values, v.Rows(), ndata, ma, right, a);

  chi_square = 0;
  for (int i = 1; i <= ndata; ++i) {
    F::Fill(x[i], basis, ma);
    T fitted = 0;
    for (int j = 1; j <= ma; ++j) fitted += a[j] * basis[j];
    const T residual = (y[i] - fitted) / sig[i];
    chi_square += residual * residual;
  }
}

template <class T, class F>
void SVDFIT<T, F>::FitQuiet(const T* x, const T* y, const T* sig, int data_count, T* a,
                            int parameter_count, T& chi_square) {
  Fit(x, y, sig, data_count, a, parameter_count, chi_square);
}

template class SVDFIT<float, POLYNOM_FUNCTION<float>>;
template class SVDFIT<double, POLYNOM_FUNCTION<double>>;
template class SVDFIT<long double, POLYNOM_FUNCTION<long double>>;
template class SVDFIT<float, CHEBY_POLY_FUNCTION<float>>;
template class SVDFIT<double, CHEBY_POLY_FUNCTION<double>>;

}  // namespace varnoth
