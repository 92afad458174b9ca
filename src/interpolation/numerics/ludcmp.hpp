#pragma once

namespace varnoth {

/// LU decomposition in Crout's form with partial pivoting and implicit scaling, in place on
/// a[1..n][1..n]; `indx[1..n]` takes the row swaps and `d` their parity, +1 or -1 (Press et al.,
/// 2.3). A row of zeros ends the process by `nrerror`; a zero pivot is replaced by 1e-20.
void ludcmp(long double* const* a, int n, int* indx, long double& d);

/// Solves the decomposed system for b[1..n], in place.
void lubksb(const long double* const* a, int n, const int* indx, long double* b);

/// Coefficients[1..n], constant term first, of the polynomial through n points x[1..n], y[1..n].
void polcoe(int n, const double* x, const double* y, double* coefficients);

}  // namespace varnoth
