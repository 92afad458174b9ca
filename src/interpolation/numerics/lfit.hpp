#pragma once

namespace varnoth {

/// Fills the basis functions afunc[1..ma] at x.
using BASIS_FUNCTIONS = void (*)(double x, double* afunc, int ma);

/// The powers 1, x, x², … as a basis.
void power_series(double x, double* afunc, int ma);

/// General linear least squares by the normal equations (Press et al., 15.4): fits a[1..ma] of
/// y = Σ a[j] f_j(x) to ndat points x, y with standard deviations sig, all one-based. Parameters
/// whose `ia` is 0 stay as they are. `covar[1..ma][1..ma]` takes the covariances, `chisq` the sum
/// of the squared weighted residuals. Nothing to fit, or a singular system, ends the process by
/// `nrerror`.
void lfit(const double* x, const double* y, const double* sig, int ndat, double* a, const int* ia,
          int ma, double* const* covar, double* chisq, BASIS_FUNCTIONS funcs);

/// Spreads a covariance matrix of the mfit fitted parameters to all ma of them; the rows and
/// columns of the others are 0.
void covsrt(double* const* covar, int ma, const int* ia, int mfit);

}  // namespace varnoth
