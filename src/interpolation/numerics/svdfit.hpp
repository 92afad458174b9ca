#pragma once

#include "foundation/array.hpp"
#include "foundation/matrix.hpp"

namespace varnoth {

/// The monomials 1, x, x², … as a basis p[1..ma], ma >= 1.
template <class T>
struct POLYNOM_FUNCTION {
  static void Fill(T x, T* p, int ma) {
    p[1] = 1;
    for (int j = 2; j <= ma; ++j) p[j] = p[j - 1] * x;
  }
};

/// The Chebyshev polynomials of the first kind, T_0(x), T_1(x), …, as a basis p[1..ma], ma >= 1.
template <class T>
struct CHEBY_POLY_FUNCTION {
  static void Fill(T x, T* p, int ma) {
    p[1] = 1;
    if (ma > 1) p[2] = x;
    for (int j = 3; j <= ma; ++j) p[j] = 2 * x * p[j - 1] - p[j - 2];
  }
};

/// Linear least squares over a basis F by singular value decomposition (Press et al., 15.4).
/// Singular values below 1e-5 (float), 1e-14 (double) or 1e-32 (long double) of the largest count
/// as 0, so that the fit leaves out nearly dependent directions instead of blowing them up. All
/// arrays are one-based; n points and k parameters take O(n k²).
///
///     SVDFIT<double, POLYNOM_FUNCTION<double>> fit;
///     double chi_square = 0.0;
///     fit.Fit(x, y, sig, n, a, 3, chi_square);  // a parabola a[1] + a[2] x + a[3] x²
template <class T, class F>
class SVDFIT {
 public:
  SVDFIT() = default;
  SVDFIT(const SVDFIT&) = default;
  SVDFIT& operator=(const SVDFIT&) = default;
  virtual ~SVDFIT() = default;

  /// Sizes the work space; `Fit` does so itself. Does nothing if both counts are unchanged. Throws
  /// ERROR_NO_MEMORY.
  virtual void Resize(int data_count, int parameter_count);
  /// Fits a[1..parameter_count] to the points x, y with standard deviations sig, all
  /// [1..data_count]; `chi_square` receives the sum of the squared weighted residuals. FitQuiet
  /// does the same. Throws ERROR_NO_MEMORY or the text of ARRAY when it runs out of memory; a
  /// decomposition that does not converge ends the process by `nrerror`.
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
