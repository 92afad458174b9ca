#include "interpolation/cheby_poly.hpp"
#include "interpolation/everett.hpp"
#include "interpolation/known_series.hpp"
#include "interpolation/polynom.hpp"
#include "interpolation/polynom_fit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

constexpr auto Everett = Built<EVERETT<double>>;

const std::vector<double> GRID = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};
double Fourth(double x) { return x * x * x * x; }

using InterpolatorsTest = LoggedTest;
template <class T>
class EverettOf : public testing::Test {};
using ELEMENTS = testing::Types<float, double>;
TYPED_TEST_SUITE(EverettOf, ELEMENTS);

// The order + 2 samples around an interval carry any polynomial up to degree order + 1.
TYPED_TEST(EverettOf, ReproducesPolynomialsUpToOneDegreeAboveItsOrder) {
  using T = TypeParam;
  std::vector<T> abscissae;
  for (const double i : GRID) abscissae.push_back(T(i / 8 - 1));
  for (const int degree : {1, 3, 5, 7, 9}) {
    const auto series = Series(abscissae, [&](T x) { return Known(degree, 0, x); });
    const auto everett = Built<EVERETT<T>>(degree - 1, series);
    for (int tenths = 5 * degree - 4; tenths < 175 - 5 * degree; tenths += 2) {
      const T x = T(tenths) / 80 - 1;
      // Samples up to 3 have up to 1 rounding, raised by weights of sum 2, 4/dx and 16/dx².
      EXPECT_LT(Roundings(everett.GetY(x), Known(degree, 0, x)), 4) << degree << " " << x;
      EXPECT_LT(Roundings(everett.GetDerivedY(x), Known(degree, 1, x)), 32) << degree << " " << x;
      EXPECT_LT(Roundings(everett.GetDerived2Y(x), Known(degree, 2, x)), 1024) << degree << x;
    }
  }
}

TEST_F(InterpolatorsTest, EverettTakesTheNearestGoodIntervalAndTells) {
  const auto everett = Everett(8, Series(GRID, Fourth));
  const std::string left = "EVERETT::GetXi: Forced interpolation left hand side.\n";
  const std::string right = "EVERETT::GetXi: Forced interpolation right hand side.\n";
  const std::string needed = "EVERETT::GetXi: Extrapolation needed ";
  const std::tuple<double, int, std::string> CASES[] = {
      {0.0, 4, left + needed + "(r=-4.000000, s=5.000000, i=4, ax=0.000000).\n"},
      {4.0, 4, ""},
      {14.0, 13, right},
      {15.5, 13, right + needed + "(r=2.500000, s=-1.500000, i=13, ax=15.500000).\n"},
      {std::nan(""), 13, right},
  };
  double r = 0.0, s = 0.0;
  for (const auto& [x, interval, text] : CASES) {
    EXPECT_EQ(everett.GetXi(x, r, s), interval) << x;
    EXPECT_EQ(TakeLog(), text) << x;
  }
  // Intervals are counted from the first sample, but their bounds are indices of the series.
  EXPECT_EQ(Everett(2, Series(GRID, Fourth, 10)).GetXi(3.5, r, s), 11);
}

// The fourth differences of x⁴ are 24; the weight that they miss is r (r² - 1) (r² - 4) / 120.
TEST_F(InterpolatorsTest, EverettsLastIntervalLacksItsHighestDifferenceAndDoesNotTell) {
  const auto everett = Everett(4, Series(GRID, Fourth));
  EXPECT_DOUBLE_EQ(everett.GetY(14.5), Fourth(14.5));
  EXPECT_DOUBLE_EQ(everett.GetY(15.5), Fourth(15.5) - 24 * 0.01171875);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(InterpolatorsTest, EverettRefusesWhatItCanNotInterpolate) {
  const std::string only = "EVERETT::Create: Everett interpolation only possible ";
  const std::tuple<int, std::vector<double>, std::string> CASES[] = {
      {2, {}, "EVERETT::Create: more than 1 value needed.\n"},
      {2, {1}, "EVERETT::Create: more than 1 value needed.\n"},
      {3, {0, 1, 2}, only + "with even order, not for given order 3.\n"},
      {-1, {0, 1, 2}, only + "with even order, not for given order -1.\n"},
      {2, {5, 5, 5}, only + "on equidistant grid.\n"},
      {2, {0, std::nan(""), 2}, only + "on equidistant grid.\n"},
      {2, {0, 5, 10 + 6e-8}, only + "on equidistant grid.\n"},
      {2, {0, 5, 10, 15 - 6e-8}, only + "on equidistant grid.\n"},
  };
  for (const auto& [order, abscissae, text] : CASES) {
    EXPECT_THROW(Everett(order, Series(abscissae, Fourth)), INVALID_PARAMETER_VALUE) << text;
    EXPECT_EQ(TakeLog(), text);
  }
  EXPECT_NO_THROW(Everett(2, Series<double>({0, 5, 10, 15 - 4e-8}, Fourth)));
  const auto pair = Series<double>({0, 1}, Fourth);
  EXPECT_EQ(Everett(0, pair).GetY(1.0), 1.0);
  EXPECT_EQ(Everett(2, pair).GetY(0.25), 0.25);
  EXPECT_THROW(Everett(4, pair).GetY(0.25), INVALID_PARAMETER_VALUE);
  EXPECT_TRUE(TakeLog().ends_with("EVERETT::GetXi: 2 samples are too few for order 4.\n"));
}

template <class INTERPOLATOR>
class PolynomialBy : public testing::Test {};
using POLYNOMIALS =
    testing::Types<POLYNOM<float>, POLYNOM<double>, POLYNOM_FIT<float>, POLYNOM_FIT<double>,
                   POLYNOM_FIT<long double>, CHEBY_POLY<float>, CHEBY_POLY<double>>;
TYPED_TEST_SUITE(PolynomialBy, POLYNOMIALS);

TYPED_TEST(PolynomialBy, ReproducesACubicAndLowerOrdersOverFewSamples) {
  using T = decltype(TypeParam::SAMPLE::x);
  std::vector<T> abscissae = {T(0.5), T(-1), T(1.5), T(-0.25), T(1)};
  for (const int count : {5, 4, 2, 1}) {
    abscissae.resize(count);
    const int degree = std::min(count - 1, 3);
    const auto series = Series(abscissae, [&](T x) { return Known(degree, 0, x); });
    const auto polynomial = Built<TypeParam>(3, series);
    for (const T x : {T(-1), T(0.3), T(1.25), T(2)}) {
      // Samples up to 2 have up to 1 rounding; their weights sum up to 21, 70, 153 at x = 2.
      EXPECT_LT(Roundings(polynomial.GetY(x), Known(degree, 0, x)), 42) << x;
      EXPECT_LT(Roundings(polynomial.GetDerivedY(x), Known(degree, 1, x)), 140) << x;
      EXPECT_LT(Roundings(polynomial.GetDerived2Y(x), Known(degree, 2, x)), 306) << x;
    }
  }
  EXPECT_THROW(Built<TypeParam>(3, {}).GetY(0), INVALID_PARAMETER_VALUE);
}

// Through 0, 1, 2, 3, 4 the coefficients of x⁴ are 0, 1, 7, 6, 1. With the nodes 0, 1, 2 in each
// step the second derivative comes to 2 ((x - 2)(3x + 3) + (x - 1)(2x + 5) + x² + 6x + 7).
TEST(PolynomTest, ItsSecondDerivativeIsAnotherOneFromDegreeFourOn) {
  const auto series = Series<double>({0, 1, 2, 3, 4}, Fourth);
  const auto polynom = Built<POLYNOM<double>>(0, series);
  EXPECT_EQ(polynom.GetCoeffs()[2], 7.0);
  for (const double x : {0.0, 2.5}) EXPECT_EQ(polynom.GetDerived2Y(x), 12 * x * x + 12 * x - 8);
}

// The singular values of a line over 0, h, 2h are as 0.8 h to 1. Through 1, 2, 3 it starts at 1, or
// without its slope at the mean; 0.01 tells them apart.
TEST(PolynomFitTest, LeavesOutADirectionBelowItsTolerance) {
  const auto start = []<class T>(T h) {
    const auto series = Series<T>({0, h, 2 * h}, [&](T x) { return 1 + x / h; });
    return static_cast<double>(Built<POLYNOM_FIT<T>>(1, series).GetY(0));
  };
  EXPECT_NEAR(start(5e-6F), 2, 0.01);
  EXPECT_NEAR(start(5e-5F), 1, 0.01);
  EXPECT_NEAR(start(5e-15), 2, 0.01);
  EXPECT_NEAR(start(5e-14), 1, 0.01);
  EXPECT_NEAR(start(1e-16L), 1, 0.01);
}

}  // namespace
}  // namespace varnoth::test
