#include "interpolation/numerics/ludcmp.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/matrix.hpp"
#include "interpolation/numerics/nrerror.hpp"

namespace varnoth {

namespace {

constexpr long double TINY = 1e-20L;

/// a[i][j] minus the first `terms` products of L's row i with U's column j.
long double Reduced(const long double* const* a, int i, int j, int terms) {
  long double sum = a[i][j];
  for (int k = 1; k <= terms; ++k) sum -= a[i][k] * a[k][j];
  return sum;
}

}  // namespace

void ludcmp(long double* const* a, int n, int* indx, long double& d) {
  ARRAY<long double> scale_array(1, n);
  long double* const scale = scale_array.GetBase();
  d = 1.0L;
  for (int i = 1; i <= n; ++i) {
    long double largest = 0.0L;
    for (int j = 1; j <= n; ++j) largest = std::max(largest, std::fabs(a[i][j]));
    if (largest == 0.0L) nrerror("Singular matrix in routine LUDCMP");
    scale[i] = 1.0L / largest;
  }
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i < j; ++i) a[i][j] = Reduced(a, i, j, i - 1);
    int pivot = j;
    long double largest = 0.0L;
    for (int i = j; i <= n; ++i) {
      a[i][j] = Reduced(a, i, j, j - 1);
      // The later of two equal candidates wins.
      const long double merit = scale[i] * std::fabs(a[i][j]);
      if (merit >= largest) {
        largest = merit;
        pivot = i;
      }
    }
    if (pivot != j) {
      std::swap_ranges(a[pivot] + 1, a[pivot] + n + 1, a[j] + 1);
      d = -d;
      scale[pivot] = scale[j];
    }
    indx[j] = pivot;
    if (a[j][j] == 0.0L) a[j][j] = TINY;
    for (int i = j + 1; i <= n; ++i) a[i][j] *= 1.0L / a[j][j];
  }
}

void lubksb(const long double* const* a, int n, const int* indx, long double* b) {
  int first = 0;  // first row with a right-hand side other than 0; the sums start there
  for (int i = 1; i <= n; ++i) {
    const int swapped = indx[i];
    long double sum = b[swapped];
    b[swapped] = b[i];
    if (first != 0) {
      for (int j = first; j < i; ++j) sum -= a[i][j] * b[j];
    } else if (sum != 0.0L) {
      first = i;
    }
    b[i] = sum;
  }
  for (int i = n; i >= 1; --i) {
    long double sum = b[i];
    for (int j = i + 1; j <= n; ++j) sum -= a[i][j] * b[j];
    b[i] = sum / a[i][i];
  }
}

void polcoe(int n, const double* x, const double* y, double* coefficients) {
  const RANGE<int> range(1, n);
  MATRIX<long double> vandermonde(range, range);
  ARRAY<long double> solution(1, n);
  ARRAY<int> swaps(1, n);
  long double* const* const rows = vandermonde.Rows();
  for (int i = 1; i <= n; ++i) {
    rows[i][1] = 1.0L;
    for (int j = 2; j <= n; ++j) rows[i][j] = rows[i][j - 1] * x[i];
    solution.GetBase()[i] = y[i];
  }
  long double parity = 1.0L;
  ludcmp(rows, n, swaps.GetBase(), parity);
  lubksb(rows, n, swaps.GetBase(), solution.GetBase());
  for (int i = 1; i <= n; ++i) coefficients[i] = static_cast<double>(solution.GetBase()[i]);
}

}  // namespace varnoth
