#pragma once

namespace varnoth {

/// Gauss-Jordan elimination with full pivoting, in place: a[1..n][1..n] becomes its inverse, and
/// b[1..n][1..m], m right-hand columns, the solutions (Press et al., 2.1). A singular matrix ends
/// the process by `nrerror`.
void gaussj(double* const* a, int n, double* const* b, int m);

}  // namespace varnoth
