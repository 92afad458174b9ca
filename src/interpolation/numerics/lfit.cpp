#include "interpolation/numerics/lfit.hpp"

#include <algorithm>

#include "interpolation/numerics/gaussj.hpp"
#include "interpolation/numerics/internal/scratch.hpp"
#include "interpolation/numerics/nrerror.hpp"

namespace varnoth {

void power_series(double x, double* afunc, int ma) {
  double power = 1.0;
  for (int j = 1; j <= ma; ++j) {
    afunc[j] = power;
    if (j < ma) power *= x;
  }
}

void lfit(const double* x, const double* y, const double* sig, int ndat, double* a, const int* ia,
          int ma, double* const* covar, double* chisq, BASIS_FUNCTIONS funcs) {
  int mfit = 0;
  for (int j = 1; j <= ma; ++j) mfit += ia[j] != 0 ? 1 : 0;
  if (mfit == 0) nrerror("lfit: no parameters to be fitted");
  // The basis functions at all points, one row per point, because two loops use them.
  SCRATCH<double, 128> afunc_space(static_cast<std::size_t>(ndat) * ma);
  SCRATCH<double> fitted_space(mfit);
  SCRATCH<double> beta_space(mfit);
  SCRATCH<double*> beta_rows(mfit);
  const auto afunc_of = [&](int point) {
    return afunc_space.Base() + std::ptrdiff_t{ma} * (point - 1);
  };
  double* const beta = beta_space.Base();
  for (int row = 1; row <= mfit; ++row) {
    std::fill_n(covar[row] + 1, mfit, 0.0);
    beta[row] = 0.0;
    beta_rows.Base()[row] = beta + row - 1;
  }

  for (int i = 1; i <= ndat; ++i) {
    double* const afunc = afunc_of(i);
    funcs(x[i], afunc, ma);
    // Only the basis functions of the fitted parameters.
    double* const basis = mfit < ma ? fitted_space.Base() : afunc;
    double rest = y[i];
    for (int row = 0, j = 1; j <= ma && mfit < ma; ++j) {
      if (ia[j] != 0) {
        basis[++row] = afunc[j];
      } else {
        rest -= a[j] * afunc[j];
      }
    }
    const double weight = 1.0 / (sig[i] * sig[i]);
    for (int row = 1; row <= mfit; ++row) {
      const double weighted = basis[row] * weight;
      double* const sums = covar[row];
      for (int column = 1; column <= row; ++column) sums[column] += weighted * basis[column];
      beta[row] += rest * weighted;
    }
  }
  for (int j = 2; j <= mfit; ++j) {
    for (int k = 1; k < j; ++k) covar[k][j] = covar[j][k];
  }

  gaussj(covar, mfit, beta_rows.Base(), 1);
  for (int row = 0, l = 1; l <= ma; ++l) {
    if (ia[l] != 0) a[l] = beta[++row];
  }

  *chisq = 0.0;
  for (int i = 1; i <= ndat; ++i) {
    const double* const afunc = afunc_of(i);
    double fitted = 0.0;
    for (int j = 1; j <= ma; ++j) fitted += a[j] * afunc[j];
    const double residual = (y[i] - fitted) / sig[i];
    *chisq += residual * residual;
  }
  covsrt(covar, ma, ia, mfit);
}

void covsrt(double* const* covar, int ma, const int* ia, int mfit) {
  for (int i = mfit + 1; i <= ma; ++i) {
    for (int j = 1; j <= i; ++j) covar[i][j] = covar[j][i] = 0.0;
  }
  for (int j = ma, k = mfit; j >= 1; --j) {
    if (ia[j] == 0) continue;
    if (j == k) break;  // all that follow are in place, too
    for (int i = 1; i <= ma; ++i) std::swap(covar[i][k], covar[i][j]);
    for (int i = 1; i <= ma; ++i) std::swap(covar[k][i], covar[j][i]);
    --k;
  }
}

}  // namespace varnoth
