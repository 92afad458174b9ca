#pragma once

namespace varnoth {

/// Fills the basis functions afunc[1..ma] at x.
using BASIS_FUNCTIONS = void (*)(double x, double* afunc, int ma);

/// The powers 1, x, x², … as a basis.
void power_series(double x, double* afunc, int ma);

/// General linear least squares by the normal equations (Press et al., 15.4): fits a[1..ma] of
/// y = Σ a[j] f_j(x) to the points x[1..ndat], y[1..ndat] with standard deviations sig[1..ndat].
/// Parameters whose ia[1..ma] is 0 keep their value. `covar[1..ma][1..ma]` receives the
/// covariances, `chisq` the sum of the squared weighted residuals.
///
///     // A straight line through n points; x, y, sig, a and ia point one before their arrays.
///     lfit(x, y, sig, n, a, ia, 2, covar.Rows(), &chi_square, power_series);
///
/// A fit without parameters, or with a singular system, ends the process by `nrerror`. Throws
/// ERROR_NO_MEMORY.
void lfit(const double* x, const double* y, const double* sig, int ndat, double* a, const int* ia,
          int ma, double* const* covar, double* chisq, BASIS_FUNCTIONS funcs);

/// Spreads the covariances of the mfit fitted parameters, in covar[1..mfit][1..mfit], to
/// covar[1..ma][1..ma]; rows and columns of the other parameters become 0. `ia` is that of `lfit`.
void covsrt(double* const* covar, int ma, const int* ia, int mfit);

}  // namespace varnoth
