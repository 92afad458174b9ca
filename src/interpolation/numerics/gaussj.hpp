#pragma once

namespace varnoth {

/// Gauss-Jordan elimination with full pivoting, in place: a[1..n][1..n] becomes its inverse, and
/// the m right-hand columns b[1..n][1..m] become the solutions (Press et al., 2.1).
///
///     gaussj(system.Rows(), 3, right_side.Rows(), 1);  // two MATRIX<double> from index 1
///
/// A pivot that is exactly 0, or no pivot but NaN, ends the process by `nrerror`. Throws
/// ERROR_NO_MEMORY.
void gaussj(double* const* a, int n, double* const* b, int m);

}  // namespace varnoth
