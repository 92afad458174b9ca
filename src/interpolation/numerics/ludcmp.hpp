#pragma once

namespace varnoth {

/// LU decomposition in Crout's form with partial pivoting and implicit scaling, in place on
/// a[1..n][1..n]; `indx[1..n]` receives the row swaps and `d` their parity, +1 or -1 (Press et al.,
/// 2.3).
///
///     ludcmp(system.Rows(), 3, swaps.GetBase(), parity);  // MATRIX and ARRAY from index 1
///     lubksb(system.Rows(), 3, swaps.GetBase(), right_side.GetBase());
///
/// A row of zeros ends the process by `nrerror`; a zero pivot becomes 1e-20. Throws the text of
/// ARRAY when it runs out of memory.
void ludcmp(long double* const* a, int n, int* indx, long double& d);

/// Solves the system that `ludcmp` decomposed: b[1..n] becomes the solution.
void lubksb(const long double* const* a, int n, const int* indx, long double* b);

/// Gives coefficients[1..n], constant term first, of the polynomial of degree n - 1 through the
/// points x[1..n], y[1..n]. Equal abscissae give huge numbers, not a failure. Throws
/// ERROR_NO_MEMORY or the text of ARRAY when it runs out of memory.
void polcoe(int n, const double* x, const double* y, double* coefficients);

}  // namespace varnoth
