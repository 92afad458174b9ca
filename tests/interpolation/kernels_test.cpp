#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/matrix.hpp"
#include "interpolation/numerics/gaussj.hpp"
#include "interpolation/numerics/lfit.hpp"
#include "interpolation/numerics/ludcmp.hpp"
#include "interpolation/numerics/nrutil.hpp"
#include "interpolation/numerics/svd.hpp"
#include "interpolation/numerics/svdfit.hpp"

namespace varnoth::test {
namespace {

/// A one-based matrix of f(i, j).
template <class T, class F>
MATRIX<T> Filled(int rows, int columns, F f) {
  MATRIX<T> matrix(RANGE<int>(1, rows), RANGE<int>(1, columns));
  for (int n = 0; n < rows * columns; ++n)
    matrix.GetBlock()[n] = T(f(n / columns + 1, n % columns + 1));
  return matrix;
}

/// All distances of Σ f(i, k, j), k = 1 … count, from h(i, j), summed so that a NaN shows.
template <class F, class H>
long double SumError(int rows, int count, int columns, F f, H h) {
  long double error = 0.0L;
  for (int n = 0; n < rows * columns; ++n) {
    const int i = n / columns + 1, j = n % columns + 1;
    long double sum = -h(i, j);
    for (int k = 1; k <= count; ++k) sum += f(i, k, j);
    error += std::fabs(sum);
  }
  return error;
}

constexpr auto IDENTITY = [](int i, int j) { return i == j ? 1.0L : 0.0L; };
/// The first element is 0, so that nothing is eliminated without a swap.
constexpr auto WAVES = [](int i, int j) { return std::sin(i * j * j - 1.0L); };

TEST(Gaussj, GivesTheInverseWhereNothingIsEliminatedWithoutASwap) {
  auto a = Filled<double>(4, 4, WAVES);
  gaussj(a.Rows(), 4, a.Rows(), 0);
  const auto product = [&](int i, int k, int j) { return WAVES(i, k) * a.Rows()[k][j]; };
  EXPECT_LT(SumError(4, 4, 4, product, IDENTITY), 2e-14);  // roundings of sums up to 20
}

template <class T>
class SvdOf : public testing::Test {};
using REALS = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(SvdOf, REALS);

TYPED_TEST(SvdOf, IsAnOrthogonalDecompositionThatSolves) {
  using T = TypeParam;
  constexpr int n = 4;
  for (const int m : {4, 7, 5}) {
    const int zero = m == 5 ? 1 : 0;  // a column
    const auto f = [&](int i, int j) { return j == zero ? T(0) : T(WAVES(i, j)); };
    auto a = Filled<T>(m, n, f);
    auto square = Filled<T>(n, n, IDENTITY);
    const T *const *const u = a.Rows(), *const *const v = square.Rows();
    T w[5] = {}, b[8] = {}, x[5] = {};
    svdcmp<T>(a.Rows(), m, n, w, square.Rows());
    const auto uwv = [&](int i, int k, int j) { return 1.0L * u[i][k] * w[k] * v[j][k]; };
    const auto uu = [&](int i, int k, int j) { return 1.0L * u[k][i] * u[k][j]; };
    const auto vv = [&](int i, int k, int j) { return 1.0L * v[k][i] * v[k][j]; };
    // A sum over m n elements of order 1, each rounded in some 30 rotations that cancel in part.
    const long double tolerance = 10.0L * m * n * std::numeric_limits<T>::epsilon();
    EXPECT_LT(SumError(m, n, n, uwv, f), tolerance);
    EXPECT_LT(SumError(n, m, n, uu, IDENTITY), tolerance);
    EXPECT_LT(SumError(n, n, n, vv, IDENTITY), tolerance);
    EXPECT_GE(*std::min_element(w + 1, w + n + 1), 0);
    EXPECT_EQ(std::count(w + 1, w + n + 1, T(0)), zero != 0 ? 1 : 0);
    for (int i = 1; i <= m; ++i) b[i] = f(i, 1) + f(i, 2) + f(i, 3) + f(i, 4);
    svbksb<T>(u, w, v, m, n, b, x);
    for (int j = 1; j <= n; ++j) EXPECT_LT(std::fabs(x[j] - (j == zero ? 0 : 1)), tolerance) << j;
  }
}

TEST(Ludcmp, AScaleMovesWithItsRowTheLaterOfEqualPivotsWinsAndAZeroOneBecomesTiny) {
  auto a = Filled<long double>(2, 2, [](int, int) { return 1; });
  int swaps[4] = {};
  long double parity = 0.0L;
  ludcmp(a.Rows(), 2, swaps, parity);
  EXPECT_EQ(swaps[1] * parity, -2.0L);
  EXPECT_EQ(a.Rows()[2][2], 1e-20L);
  // The second pivots are 3/4 and 1 by their own rows' scales, but 3/4 and 1/10 by the places'.
  constexpr int ROWS[][3] = {{0, 1, 1}, {0, 3, 4}, {1, 0, 10}};
  auto b = Filled<long double>(3, 3, [&](int i, int j) { return ROWS[i - 1][j - 1]; });
  ludcmp(b.Rows(), 3, swaps, parity);
  EXPECT_EQ(swaps[1] * swaps[2] * parity, 9.0L);
}

TEST(Polcoe, FindsAPolynomialThroughItsPoints) {
  const double x[] = {0, 1, -2, -1, 3}, y[] = {0, 0, -3, 2, 22}, known[] = {0, 1, -2, 0, 1};
  double c[5] = {};
  polcoe(4, x, y, c);
  for (int j = 1; j <= 4; ++j) EXPECT_NEAR(c[j], known[j], 1e-15) << j;  // roundings of 22
}

// Y is 1 + 3 x + 2 x² and residuals -1, 3/4, -3/4, 1: times the weights 1, 4, 4, 1 they are a third
// difference. For 1 and z = x² the sums are S = 10, Sz = 9, Szz = 21, with S Szz - Sz² = 129, so
// that var p = Szz/129, var q = S/129, cov = -Sz/129.
TEST(Fits, WeighTheirDataAndLfitKeepsWhatIsFixedAndGivesTheCovarianceOfTheRest) {
  constexpr double X[] = {0, -1, 0, 1, 2}, Y[] = {0, -1, 1.75, 5.25, 16}, KNOWN[] = {0, 1, 3, 2};
  constexpr double SIGMA[] = {0, 1, 0.5, 0.5, 1}, COVARIANCE[] = {21, 0, -9, 0, 0, 0, -9, 0, 10};
  constexpr int MASK[] = {0, 1, 0, 1};
  auto covariance = Filled<double>(3, 3, [](int, int) { return 9; });
  double a[] = {0, 9, KNOWN[2], 9}, b[4] = {}, chi_square_a = 0, chi_square_b = 0;
  lfit(X, Y, SIGMA, 4, a, MASK, 3, covariance.Rows(), &chi_square_a, power_series);
  SVDFIT<double, POLYNOM_FUNCTION<double>>().Fit(X, Y, SIGMA, 4, b, 3, chi_square_b);
  for (int j = 1; j <= 3; ++j) EXPECT_NEAR(a[j], KNOWN[j], 1e-14) << j;  // roundings of 16
  for (int j = 1; j <= 3; ++j) EXPECT_NEAR(b[j], KNOWN[j], 1e-14) << j;
  EXPECT_NEAR(chi_square_a, 6.5, 1e-13);
  EXPECT_NEAR(chi_square_b, 6.5, 1e-13);
  for (int i = 0; i < 9; ++i) EXPECT_NEAR(covariance.GetBlock()[i], COVARIANCE[i] / 129, 1e-15);
}

// A block that is too short would spill into the heap's own numbers.
template <class T>
void HoldVectors(T* (*make)(long, long), void (*release)(T*, long, long)) {
  T* const v = make(-500, 499);
  std::fill_n(v - 500, 1000, T(1));
  release(v, -500, 499);
}
template <class T>
void HoldMatrices(T** (*make)(long, long, long, long),
                  void (*release)(T**, long, long, long, long)) {
  T** const m = make(-50, 49, 100, 249);
  for (int i = -50; i < 50; ++i) std::fill_n(m[i] + 100, 150, T(i));
  for (int i = -50; i < 50; ++i) EXPECT_EQ(std::count(m[i] + 100, m[i] + 250, T(i)), 150);
  release(m, -50, 49, 100, 249);
}

TEST(Nrutil, EveryTypeHasItsVectorsAndMatrices) {
  HoldVectors(vector, free_vector), HoldVectors(ivector, free_ivector);
  HoldVectors(cvector, free_cvector), HoldVectors(lvector, free_lvector);
  HoldVectors(dvector, free_dvector), HoldVectors(ldvector, free_ldvector);
  HoldMatrices(matrix, free_matrix), HoldMatrices(imatrix, free_imatrix);
  HoldMatrices(dmatrix, free_dmatrix), HoldMatrices(ldmatrix, free_ldmatrix);
}

TEST(Nrutil, ViewsShareTheirElements) {
  float block[12] = {};
  float** const whole = convert_matrix(block, 1, 3, 1, 4);
  float** const part = submatrix(whole, 2, 3, 2, 3, 0, 7);
  EXPECT_EQ(&part[1][8], &block[10]);
  free_submatrix(part, 0, 1, 7, 8);
  free_convert_matrix(whole, 1, 3, 1, 4);
}

TEST(KernelsDeathTest, EndTheProcessWithTheirText) {
  auto a = Filled<double>(2, 2, [](int, int) { return 1; });
  auto bad = Filled<double>(2, 2, [](int, int) { return std::nan(""); });
  double d[3] = {};
  const testing::ExitedWithCode failed(1);
  EXPECT_EXIT(gaussj(a.Rows(), 2, bad.Rows(), 2), failed, "\ngaussj: Singular Matrix-2\n");
  EXPECT_EXIT(gaussj(bad.Rows(), 2, a.Rows(), 2), failed, "\ngaussj: Singular Matrix-1\n");
  EXPECT_EXIT(svdcmp(bad.Rows(), 2, 2, d, a.Rows()), failed,
              "^Numerical Recipes run-time error...\nno convergence in 30 svdcmp iterations\n"
              "...now exiting to system...\n$");
}

}  // namespace
}  // namespace varnoth::test
