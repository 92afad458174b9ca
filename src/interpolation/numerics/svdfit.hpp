#pragma once

#include "foundation/array.hpp"
#include "foundation/matrix.hpp"

namespace varnoth {

/// The monomials 1, x, x², … as a basis p[1..ma].
template <class T>
struct POLYNOM_FUNCTION {
  static void Fill(T x, T* p, int ma) {
    p[1] = 1;
    for (int j = 2; j <= ma; ++j) p[j] = p[j - 1] * x;
  }
};

/// The Chebyshev polynomials of the first kind as a basis p[1..ma].
template <class T>
struct CHEBY_POLY_FUNCTION {
  static void Fill(T x, T* p, int ma) {
    p[1] = 1;
    if (ma > 1) p[2] = x;
    for (int j = 3; j <= ma; ++j) p[j] = 2 * x * p[j - 1] - p[j - 2];
  }
};

/// Linear least squares over a basis F by singular value decomposition (Press et al., 15.4, with a
/// tolerance of its own per type): nearly dependent directions are left out instead of blown up.
/// All arrays are one-based.
template <class T, class F>
class SVDFIT {
 public:
  SVDFIT() = default;
  SVDFIT(const SVDFIT&) = default;
  SVDFIT& operator=(const SVDFIT&) = default;
  virtual ~SVDFIT() = default;

  /// Sizes the work space; no work if both counts are unchanged. Throws ERROR_NO_MEMORY.
  virtual void Resize(int data_count, int parameter_count);
  /// Fits a[1..parameter_count] to x, y with standard deviations sig; `chi_square` takes the sum of
  /// the squared weighted residuals.
  virtual void Fit(const T* x, const T* y, const T* sig, int data_count, T* a, int parameter_count,
                   T& chi_square);
  virtual void FitQuiet(const T* x, const T* y, const T* sig, int data_count, T* a,
                        int parameter_count, T& chi_square);

 private:
  int ndata = 0;
  int ma = 0;
  ARRAY<T> w;   ///< singular values
  MATRIX<T> u;  ///< ndata × ma
  MATRIX<T> v;  ///< ma × ma
  ARRAY<T> b;
  ARRAY<T> afunc;
};

extern template class SVDFIT<float, POLYNOM_FUNCTION<float>>;
extern template class SVDFIT<double, POLYNOM_FUNCTION<double>>;
extern template class SVDFIT<long double, POLYNOM_FUNCTION<long double>>;
extern template class SVDFIT<float, CHEBY_POLY_FUNCTION<float>>;
extern template class SVDFIT<double, CHEBY_POLY_FUNCTION<double>>;

}  // namespace varnoth
