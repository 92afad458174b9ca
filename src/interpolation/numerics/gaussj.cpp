#include "interpolation/numerics/gaussj.hpp"

#include <algorithm>
#include <cmath>

#include "interpolation/numerics/internal/scratch.hpp"
#include "interpolation/numerics/nrerror.hpp"

namespace varnoth {

namespace {

struct PIVOT {
  int row;
  int column;
};

/// The largest element outside the rows and columns of earlier pivots; the last of equal ones wins.
PIVOT LargestElement(double* const* a, int n, const int* used) {
  PIVOT pivot{};
  double largest = 0.0;
  for (int row = 1; row <= n; ++row) {
    if (used[row] != 0) continue;
    for (int column = 1; column <= n; ++column) {
      if (used[column] == 0 && std::fabs(a[row][column]) >= largest) {
        largest = std::fabs(a[row][column]);
        pivot = {row, column};
      }
    }
  }
  return pivot;
}

void SwapRows(double* const* matrix, int columns, int i, int j) {
  if (i != j) std::swap_ranges(matrix[i] + 1, matrix[i] + columns + 1, matrix[j] + 1);
}

void ScaleRow(double* row, int columns, double factor) {
  for (int c = 1; c <= columns; ++c) row[c] *= factor;
}

void SubtractRow(double* row, const double* pivot_row, int columns, double factor) {
  for (int c = 1; c <= columns; ++c) row[c] -= pivot_row[c] * factor;
}

}  // namespace

void gaussj(double* const* a, int n, double* const* b, int m) {
  SCRATCH<int> used_space(n);
  SCRATCH<PIVOT> pivot_space(n);
  int* const used = used_space.Base();
  PIVOT* const pivots = pivot_space.Base();
  std::fill_n(used_space.Start(), n, 0);

  for (int i = 1; i <= n; ++i) {
    const PIVOT found = LargestElement(a, n, used);
    // If only NaN is left, there is no pivot.
    if (found.column == 0) nrerror("gaussj: Singular Matrix-1");
    const int p = found.column;
    used[p] = 1;
    SwapRows(a, n, found.row, p);
    SwapRows(b, m, found.row, p);
    pivots[i] = found;
    if (a[p][p] == 0.0) nrerror("gaussj: Singular Matrix-2");

    // The inverse replaces the eliminated columns one by one.
    const double inverse = 1.0 / a[p][p];
    a[p][p] = 1.0;
    ScaleRow(a[p], n, inverse);
    ScaleRow(b[p], m, inverse);
    for (int row = 1; row <= n; ++row) {
      if (row == p) continue;
      const double factor = a[row][p];
      a[row][p] = 0.0;
      SubtractRow(a[row], a[p], n, factor);
      SubtractRow(b[row], b[p], m, factor);
    }
  }

  // A row swap of the matrix is a column swap of its inverse; undo the swaps in reverse order.
  for (int i = n; i >= 1; --i) {
    if (pivots[i].row == pivots[i].column) continue;
    for (int row = 1; row <= n; ++row) std::swap(a[row][pivots[i].row], a[row][pivots[i].column]);
  }
}

}  // namespace varnoth
