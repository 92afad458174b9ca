#include "interpolation/numerics/lfit.hpp"

#include <algorithm>

#include "foundation/matrix.hpp"
#include "interpolation/numerics/gaussj.hpp"
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
  const MATRIX<double> beta_matrix(RANGE<int>(1, ma), RANGE<int>(1, 1));
  const ARRAY<double> afunc_array(1, ma);
  double* const* const beta = beta_matrix.Rows();
  double* const afunc = afunc_array.GetBase();
  for (int j = 1; j <= mfit; ++j) {
    std::fill_n(covar[j] + 1, mfit, 0.0);
    beta[j][1] = 0.0;
  }

  for (int i = 1; i <= ndat; ++i) {
    funcs(x[i], afunc, ma);
    double rest = y[i];
    for (int j = 1; j <= ma && mfit < ma; ++j) {
      if (ia[j] == 0) rest -= a[j] * afunc[j];
    }
    const double weight = 1.0 / (sig[i] * sig[i]);
    for (int row = 0, l = 1; l <= ma; ++l) {
      if (ia[l] == 0) continue;
      ++row;
      const double weighted = afunc[l] * weight;
      for (int column = 0, m = 1; m <= l; ++m) {
        if (ia[m] != 0) covar[row][++column] += weighted * afunc[m];
      }
      beta[row][1] += rest * weighted;
    }
  }
  for (int j = 2; j <= mfit; ++j) {
    for (int k = 1; k < j; ++k) covar[k][j] = covar[j][k];
  }

  gaussj(covar, mfit, beta, 1);
  for (int row = 0, l = 1; l <= ma; ++l) {
    if (ia[l] != 0) a[l] = beta[++row][1];
  }

  *chisq = 0.0;
  for (int i = 1; i <= ndat; ++i) {
    funcs(x[i], afunc, ma);
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
    for (int i = 1; i <= ma; ++i) std::swap(covar[i][k], covar[i][j]);
    for (int i = 1; i <= ma; ++i) std::swap(covar[k][i], covar[j][i]);
    --k;
  }
}

}  // namespace varnoth
