#pragma once

#include <cmath>
#include <type_traits>

namespace varnoth {

/// sqrt(a² + b²) without destructive overflow or underflow.
template <class A, class B>
std::common_type_t<A, B> pythag(A a, B b) {
  using T = std::common_type_t<A, B>;
  const T x = std::fabs(static_cast<T>(a));
  const T y = std::fabs(static_cast<T>(b));
  const T larger = x > y ? x : y;
  const T smaller = x > y ? y : x;
  if (larger == T(0)) return T(0);
  const T ratio = smaller / larger;
  return larger * std::sqrt(T(1) + ratio * ratio);
}

/// Singular value decomposition A = U · diag(w) · Vᵀ by Householder reduction to bidiagonal form
/// and implicit-shift QR (Golub and Reinsch 1970; Press et al., 2.6). a[1..m][1..n] becomes U,
/// w[1..n] receives the singular values, unsorted, and v[1..n][1..n] receives V. Exists for float,
/// double and long double.
///
///     svdcmp(u.Rows(), 4, 3, w.GetBase(), v.Rows());  // MATRIX and ARRAY from index 1
///     svbksb<double>(u.Rows(), w.GetBase(), v.Rows(), 4, 3, b.GetBase(), x.GetBase());
///
/// A singular value that does not converge within 30 steps ends the process by `nrerror`. Throws
/// the text of ARRAY when it runs out of memory.
template <class T>
void svdcmp(T* const* a, int m, int n, T* w, T* const* v);

/// Gives x[1..n], the least-squares solution of the decomposed system for the right-hand side
/// b[1..m]. Leaves out singular values of exactly 0. Throws the text of ARRAY when it runs out of
/// memory.
template <class T>
void svbksb(const T* const* u, const T* w, const T* const* v, int m, int n, const T* b, T* x);

}  // namespace varnoth
