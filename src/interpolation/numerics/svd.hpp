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
/// and implicit-shift QR (Golub and Reinsch 1970; Press et al., 2.6). a[1..m][1..n] becomes U, the
/// singular values w[1..n] are not sorted, v[1..n][1..n] is V. No convergence within 30 steps for a
/// value ends the process by `nrerror`. For float, double and long double.
template <class T>
void svdcmp(T* const* a, int m, int n, T* w, T* const* v);

/// Solves the decomposed system for the right-hand side b[1..m]; singular values of exactly 0 are
/// left out. Gives x[1..n].
template <class T>
void svbksb(const T* const* u, const T* w, const T* const* v, int m, int n, const T* b, T* x);

}  // namespace varnoth
