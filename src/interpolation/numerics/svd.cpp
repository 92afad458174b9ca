#include "interpolation/numerics/svd.hpp"

#include <algorithm>

#include "foundation/array.hpp"
#include "interpolation/numerics/nrerror.hpp"

namespace varnoth {

namespace {

/// |value| with the sign of `sign`; zero counts as positive.
template <class T>
T WithSign(T value, T sign) {
  return sign >= 0 ? std::fabs(value) : -std::fabs(value);
}

/// A Householder reflection that maps a vector x to (g, 0, …, 0) · scale. The vector of the
/// reflection replaces x, and h is minus half its squared length.
template <class T>
struct REFLECTION {
  T scale = 0;
  T g = 0;
  T h = 0;

  /// Value of the vector's only element after the reflection.
  T Image() const { return scale * g; }
};

/// Reflection of the elements first … last that `element` gives, in place and scaled. A vector of
/// zeros stays as it is, with a scale of 0.
template <class T, class ELEMENT>
REFLECTION<T> Reflect(int first, int last, ELEMENT element) {
  REFLECTION<T> reflection;
  for (int k = first; k <= last; ++k) reflection.scale += std::fabs(element(k));
  if (reflection.scale == 0) return reflection;
  T square = 0;
  for (int k = first; k <= last; ++k) {
    element(k) /= reflection.scale;
    square += element(k) * element(k);
  }
  T& head = element(first);
  reflection.g = -WithSign(std::sqrt(square), head);
  reflection.h = head * reflection.g - square;
  head -= reflection.g;
  return reflection;
}

/// The decomposition in progress.
template <class T>
class DECOMPOSITION {
 public:
  DECOMPOSITION(T* const* matrix, int row_count, int column_count, T* values, T* const* right)
      : a(matrix),
        m(row_count),
        n(column_count),
        w(values),
        v(right),
        superdiagonal(1, n),
        e(superdiagonal.GetBase()) {}

  void Bidiagonalise();
  void AccumulateRight();
  void AccumulateLeft();
  void Diagonalise();

 private:
  bool IsNegligible(T value) const { return std::fabs(value) + norm == norm; }
  /// Rotates two columns of a matrix of `rows` rows.
  static void Rotate(T* const* matrix, int rows, int i, int j, T c, T s) {
    for (int row = 1; row <= rows; ++row) {
      const T x = matrix[row][i];
      const T z = matrix[row][j];
      matrix[row][i] = x * c + z * s;
      matrix[row][j] = z * c - x * s;
    }
  }
  int SplitPoint(int k);
  void Cancel(int l, int k);
  void QrStep(int l, int k);

  T* const* a;
  int m;
  int n;
  T* w;
  T* const* v;
  ARRAY<T> superdiagonal;
  T* e;  ///< e[i]: element between columns i - 1 and i
  T norm = 0;
};

template <class T>
void DECOMPOSITION<T>::Bidiagonalise() {
  T row_image = 0;
  for (int i = 1; i <= n; ++i) {
    const int l = i + 1;
    e[i] = row_image;
    w[i] = 0;
    row_image = 0;
    if (i <= m) {
      const auto column = Reflect<T>(i, m, [&](int k) -> T& { return a[k][i]; });
      if (column.scale != 0) {
        for (int j = l; j <= n; ++j) {
          T sum = 0;
          for (int k = i; k <= m; ++k) sum += a[k][i] * a[k][j];
          const T f = sum / column.h;
          for (int k = i; k <= m; ++k) a[k][j] += f * a[k][i];
        }
        for (int k = i; k <= m; ++k) a[k][i] *= column.scale;
      }
      w[i] = column.Image();
    }
    if (i <= m && i != n) {
      const auto row = Reflect<T>(l, n, [&](int k) -> T& { return a[i][k]; });
      if (row.scale != 0) {
        for (int k = l; k <= n; ++k) e[k] = a[i][k] / row.h;
        for (int j = l; j <= m; ++j) {
          T sum = 0;
          for (int k = l; k <= n; ++k) sum += a[j][k] * a[i][k];
          for (int k = l; k <= n; ++k) a[j][k] += sum * e[k];
        }
        for (int k = l; k <= n; ++k) a[i][k] *= row.scale;
      }
      row_image = row.Image();
    }
    norm = std::max(norm, std::fabs(w[i]) + std::fabs(e[i]));
  }
}

template <class T>
void DECOMPOSITION<T>::AccumulateRight() {
  for (int i = n; i >= 1; --i) {
    const int l = i + 1;
    if (i < n) {
      const T g = e[l];
      if (g != 0) {
        // Two divisions, because the product of the divisors may underflow.
        for (int j = l; j <= n; ++j) v[j][i] = (a[i][j] / a[i][l]) / g;
        for (int j = l; j <= n; ++j) {
          T sum = 0;
          for (int k = l; k <= n; ++k) sum += a[i][k] * v[k][j];
          for (int k = l; k <= n; ++k) v[k][j] += sum * v[k][i];
        }
      }
      for (int j = l; j <= n; ++j) v[i][j] = v[j][i] = 0;
    }
    v[i][i] = 1;
  }
}

template <class T>
void DECOMPOSITION<T>::AccumulateLeft() {
  for (int i = std::min(m, n); i >= 1; --i) {
    const int l = i + 1;
    for (int j = l; j <= n; ++j) a[i][j] = 0;
    if (w[i] != 0) {
      const T inverse = 1 / w[i];
      for (int j = l; j <= n; ++j) {
        T sum = 0;
        for (int k = l; k <= m; ++k) sum += a[k][i] * a[k][j];
        const T f = (sum / a[i][i]) * inverse;
        for (int k = i; k <= m; ++k) a[k][j] += f * a[k][i];
      }
      for (int j = i; j <= m; ++j) a[j][i] *= inverse;
    } else {
      for (int j = i; j <= m; ++j) a[j][i] = 0;
    }
    a[i][i] += 1;
  }
}

/// First row of the block that ends at k and has no negligible superdiagonal element. Makes a
/// negligible diagonal element above the block split it, too.
template <class T>
int DECOMPOSITION<T>::SplitPoint(int k) {
  for (int l = k; l > 1; --l) {
    if (IsNegligible(e[l])) return l;
    if (IsNegligible(w[l - 1])) {
      Cancel(l, k);
      return l;
    }
  }
  return 1;
}

/// Rotates e[l] to 0 where its diagonal neighbour w[l - 1] is negligible.
template <class T>
void DECOMPOSITION<T>::Cancel(int l, int k) {
  T c = 0;
  T s = 1;
  for (int i = l; i <= k; ++i) {
    const T f = s * e[i];
    e[i] = c * e[i];
    if (IsNegligible(f)) break;
    const T g = w[i];
    w[i] = pythag(f, g);
    const T inverse = 1 / w[i];
    c = g * inverse;
    s = -f * inverse;
    Rotate(a, m, l - 1, i, c, s);
  }
}

/// One implicit QR step on the block l … k, with the shift from its trailing 2 × 2 minor.
template <class T>
void DECOMPOSITION<T>::QrStep(int l, int k) {
  const T z = w[k];
  T x = w[l];
  T f = 0;
  {
    const T y = w[k - 1];
    const T g = e[k - 1];
    const T h = e[k];
    f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2 * h * y);
    const T root = pythag(f, static_cast<T>(1));
    f = ((x - z) * (x + z) + h * ((y / (f + WithSign(root, f))) - h)) / x;
  }
  T c = 1;
  T s = 1;
  for (int j = l; j < k; ++j) {
    const int i = j + 1;
    T g = e[i];
    T y = w[i];
    T h = s * g;
    g = c * g;
    T length = pythag(f, h);
    e[j] = length;
    c = f / length;
    s = h / length;
    f = x * c + g * s;
    g = g * c - x * s;
    h = y * s;
    y *= c;
    Rotate(v, n, j, i, c, s);
    length = pythag(f, h);
    w[j] = length;
    if (length != 0) {
      const T inverse = 1 / length;
      c = f * inverse;
      s = h * inverse;
    }
    f = c * g + s * y;
    x = c * y - s * g;
    Rotate(a, m, j, i, c, s);
  }
  e[l] = 0;
  e[k] = f;
  w[k] = x;
}

template <class T>
void DECOMPOSITION<T>::Diagonalise() {
  constexpr int STEP_LIMIT = 30;
  for (int k = n; k >= 1; --k) {
    for (int step = 1;; ++step) {
      const int l = SplitPoint(k);
      if (l == k) break;
      if (step == STEP_LIMIT) nrerror("no convergence in 30 svdcmp iterations");
      QrStep(l, k);
    }
    if (w[k] < 0) {
      w[k] = -w[k];
      for (int j = 1; j <= n; ++j) v[j][k] = -v[j][k];
    }
  }
}

}  // namespace

template <class T>
void svdcmp(T* const* a, int m, int n, T* w, T* const* v) {
  DECOMPOSITION<T> decomposition(a, m, n, w, v);
  decomposition.Bidiagonalise();
  decomposition.AccumulateRight();
  decomposition.AccumulateLeft();
  decomposition.Diagonalise();
}

template <class T>
void svbksb(const T* const* u, const T* w, const T* const* v, int m, int n, const T* b, T* x) {
  ARRAY<T> scaled_array(1, n);
  T* const scaled = scaled_array.GetBase();
  for (int j = 1; j <= n; ++j) {
    T sum = 0;
    if (w[j] != 0) {
      for (int i = 1; i <= m; ++i) sum += u[i][j] * b[i];
      sum /= w[j];
    }
    scaled[j] = sum;
  }
  for (int j = 1; j <= n; ++j) {
    T sum = 0;
    for (int k = 1; k <= n; ++k) sum += v[j][k] * scaled[k];
    x[j] = sum;
  }
}

#define VARNOTH_INSTANTIATE(T)                                                                     \
  template void svdcmp(T* const* a, int m, int n, T* w, T* const* v);                              \
  template void svbksb(const T* const* u, const T* w, const T* const* v, int m, int n, const T* b, \
                       T* x);
VARNOTH_INSTANTIATE(float)
VARNOTH_INSTANTIATE(double)
VARNOTH_INSTANTIATE(long double)
#undef VARNOTH_INSTANTIATE

}  // namespace varnoth
