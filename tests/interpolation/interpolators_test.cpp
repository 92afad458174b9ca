#include "interpolation/cheby_poly.hpp"
#include "interpolation/everett.hpp"
#include "interpolation/hermite_poly.hpp"
#include "interpolation/known_series.hpp"
#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom.hpp"
#include "interpolation/polynom_fit.hpp"
#include "interpolation/spline.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

constexpr auto Everett = Built<EVERETT<double>>;

const std::vector<double> GRID = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};
double Fourth(double x) { return x * x * x * x; }
constexpr double (*WAVE)(double) = std::cos;

using InterpolatorsTest = LoggedTest;
using InterpolatorsDeathTest = LoggedTest;

// The order + 2 samples around an interval carry any polynomial up to degree order + 1. Samples up
// to 3 have up to 1 rounding, raised by weights of sum 2, 4/dx and 16/dx².
TEST_F(InterpolatorsTest, EverettReproducesPolynomialsUpToOneDegreeAboveItsOrder) {
  std::vector<double> abscissae;
  for (const double i : GRID) abscissae.push_back(i / 8 - 1);
  for (const int degree : {1, 3, 5, 7, 9}) {
    const auto everett =
        Everett(degree - 1, Series(abscissae, [&](double x) { return Known(degree, 0, x); }));
    for (int tenths = 5 * degree - 4; tenths < 175 - 5 * degree; tenths += 2) {
      const double x = tenths / 80.0 - 1;
      ExpectKnown(Values(everett, x), degree, x, {4, 32, 1024});
    }
  }
}

TEST_F(InterpolatorsTest, EverettTakesTheNearestGoodIntervalAndTells) {
  const auto everett = Everett(8, Series(GRID, Fourth));
  const std::string left = "EVERETT::GetXi: Forced interpolation left hand side.\n",
                    right = "EVERETT::GetXi: Forced interpolation right hand side.\n",
                    needed = "EVERETT::GetXi: Extrapolation needed ";
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

TEST_F(InterpolatorsTest, EverettTakesATwoSampleSeriesAndAGridWithinItsTolerance) {
  EXPECT_NO_THROW(Everett(2, Series<double>({0, 5, 10, 15 - 4e-8}, Fourth)));
  const auto pair = Series<double>({0, 1}, Fourth);
  EXPECT_EQ(Everett(0, pair).GetY(1.0), 1.0);
  EXPECT_EQ(Everett(2, pair).GetY(0.25), 0.25);
  EXPECT_THROW(Everett(4, pair).GetY(0.25), INVALID_PARAMETER_VALUE);
  EXPECT_TRUE(TakeLog().ends_with("EVERETT::GetXi: 2 samples are too few for order 4.\n"));
}

TEST_F(InterpolatorsTest, SeriesThatCanNotBeInterpolatedAreRefused) {
  using SERIES = std::initializer_list<std::vector<double>>;
  const auto expect = [&]<class I>(I interpolator, int order, const SERIES& all,
                                   const std::string& text) {
    for (const auto& abscissae : all) {
      interpolator.SetOrder(order);
      EXPECT_THROW(interpolator.Create(At<typename I::SAMPLE>(abscissae)), INVALID_PARAMETER_VALUE);
      EXPECT_EQ(TakeLines(), "ALARM " + text + "\n");
    }
  };
  const double nan = std::nan("");
  const std::string name = "EVERETT::Create: ",
                    only = name + "Everett interpolation only possible ";
  const EVERETT<double> everett;
  expect(everett, 2, {{}, {1}}, name + "more than 1 value needed.");
  expect(everett, 3, {{0, 1, 2}}, only + "with even order, not for given order 3.");
  expect(everett, -1, {{0, 1, 2}}, only + "with even order, not for given order -1.");
  expect(everett, 2, {{5, 5, 5}, {0, nan, 2}, {0, 5, 10 + 6e-8}, {0, 5, 10, 15 - 6e-8}},
         only + "on equidistant grid.");
  const SPLINE<double> spline;
  expect(spline, 2, {{}, {0, 1}}, "SPLINE::Create: more than 2 values needed.");
  expect(spline, 2, {{0, 1, 1}, {0, 2, 1, 3}, {0, nan, 1}},
         "SPLINE::Create: the abscissae do not increase.");
  expect(HERMITE_POLY<double>(), 2, {{}}, "HERMITE_POLY::Create: there are no samples.");
  LOCAL<POLYNOM, POINT>::OF<double> local;
  expect(local, 2, {{}}, "LOCAL_INTERPOLATION: there are no samples.");
  expect(local, 2, {{0, 2, 1}, {0, nan, 2}}, "LOCAL_INTERPOLATION: the abscissae decrease.");
  local.SetSupportPoints(0);
  expect(local, 2, {{0, 1}}, "LOCAL_INTERPOLATION: no piece has 0 support points.");
}

// Samples up to 2 have up to 1 rounding; their weights sum up to 21, 70, 153 at x = 2. An order is
// at most the count less 1: three samples carry their parabola and its derivatives.
TEST_F(InterpolatorsTest, PolynomialsReproduceACubicAndTheLowerOrdersThatFewSamplesCarry) {
  const auto expect = []<class I>(I) {
    using T = decltype(I::SAMPLE::x);
    std::vector<T> abscissae = {T(0.5), T(-1), T(1.5), T(-0.25), T(1)};
    for (const int count : {5, 4, 3, 2, 1}) {
      abscissae.resize(static_cast<std::size_t>(count));
      const int degree = std::min(count - 1, 3);
      const auto series = Series(abscissae, [&](T x) { return Known(degree, 0, x); });
      const auto polynomial = Built<I>(3, series);
      for (const T x : {T(-1), T(0.3), T(1.25), T(2)}) {
        ExpectKnown(Values(polynomial, x), degree, x, {42, 140, 306});
      }
    }
    EXPECT_THROW(Built<I>(3, {}).GetY(0), INVALID_PARAMETER_VALUE);
  };
  [&](auto... interpolators) { (expect(interpolators), ...); }(
      POLYNOM<float>(), POLYNOM<double>(), POLYNOM_FIT<float>(), POLYNOM_FIT<double>(),
      POLYNOM_FIT<long double>(), CHEBY_POLY<float>(), CHEBY_POLY<double>());
}

TEST_F(InterpolatorsTest, AFitTellsItsOrderAndThatItIsLowered) {
  POLYNOM_FIT<double> fit;
  fit.SetOrder(3);
  fit.Create(Series<double>({0, 1, 2}, Fourth));
  const std::string text = "WARN  POLYFIT: reduce polynomial fit order 3 -> 2\nPARAM ";
  EXPECT_TRUE(TakeLines().starts_with(text + "POLYFIT: polynomial fit order = 2\n"));
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
  EXPECT_EQ(Built<POLYNOM_FIT<double>>(1, Series<double>({0, 0, 0}, WAVE)).GetY(3), 1);
}

// Only the natural spline is smooth and cubic between the samples: there the increase is the
// Simpson sum of the slopes, and the second derivative is straight. Over steps of 1/4 a rounding
// weighs up to 6 / h² = 96.
TEST(SplineTest, IsSmoothCubicAndWithoutCurvatureAtBothEnds) {
  for (std::vector<double> x = {-1, -0.75, -0.5, 0, 1, 1.5, 2}; x.size() >= 3; x.pop_back()) {
    const auto series = Series(x, [](double t) { return Known(6, 0, t); });
    const auto spline = Built<SPLINE<double>>(0, series);
    for (std::size_t r = 0; r + 1 < x.size(); ++r) {
      const double end = std::nextafter(x[r + 1], x[r]), h = end - x[r];
      const auto left = Values(spline, x[r]), middle = Values(spline, x[r] + h / 2);
      const auto right = Values(spline, end), next = Values(spline, x[r + 1]);
      EXPECT_EQ(left[0], series.GetElementBase(0)[r].y);
      for (unsigned d = 0; d < 3; ++d) EXPECT_LT(Roundings(right[d], next[d]), 96) << d << x[r];
      const double simpson_sum = h / 6 * (left[1] + 4 * middle[1] + right[1]);
      EXPECT_LT(Roundings(right[0] - left[0], simpson_sum), 96);
      EXPECT_LT(Roundings(right[1] - left[1], h / 2 * (left[2] + right[2])), 96);
      EXPECT_LT(Roundings(middle[2], (left[2] + right[2]) / 2), 96);
    }
    EXPECT_EQ(spline.GetDerived2Y(x.front()), 0);
    EXPECT_LT(Roundings(spline.GetDerived2Y(x.back()), 0), 96);
    EXPECT_EQ(Values(spline, std::nextafter(x.front(), -2)), (std::array<double, 3>{}));
    EXPECT_EQ(Values(spline, std::nextafter(x.back(), 3)), (std::array<double, 3>{}));
  }
  const auto ones = Series<double>({0, 1, 2}, [](double) { return 1.0; });
  const auto level = Built<SPLINE<double>>(0, ones);
  EXPECT_EQ(level.GetDerived2Y(2), 0) << "no row of the table lies behind the last sample";
}

// N samples carry the degree 2N - 1. What stands at the others would spoil the result. The samples
// at 2, 3 and 4 weigh up to 6e4 in a second derivative.
TEST(HermiteTest, EvaluateTakesTheSamplesAroundThePoint) {
  using CASE = std::tuple<int, int, double, int>;
  for (const auto& [n, order, x, start] :
       {CASE{6, 2, 0, 0}, CASE{6, 2, 1.6, 2}, CASE{6, 2, 1.5, 1}, CASE{6, 2, 4, 4},
        CASE{6, 3, 0, 0}, CASE{6, 3, 1.6, 2}, CASE{6, 3, 3.5, 3}, CASE{6, 4, 4, 2},
        CASE{4, 3, 2, 1}, CASE{3, 1, 1.2, 2}, CASE{4, 4, 0.25, 0}, CASE{1, 1, 0, 0}}) {
    const int degree = 2 * order - 1;
    const auto series = At<DPOINT<double>>({0, 1, 1.5, 2, 3, 4});
    for (int i = 0; i < 6; ++i) {
      DPOINT<double>& p = series.GetElementBase(0)[i];
      p.y = i < start || i >= start + order ? 1e9 : double(Known(degree, 0, p.x));
      p.dy = double(Known(degree, 1, p.x));
    }
    std::array<double, 3> y;
    Built<HERMITE_POLY<double>>(0, series).Evaluate(n, order, y[0], y[1], y[2], x);
    ExpectKnown(y, degree, x, {1e5, 1e5, 1e5});
  }
}

TEST_F(InterpolatorsDeathTest, WhatHasNoValueEndsTheProcess) {
  const std::string outside = "interpolation point outside of data constraints\n",
                    no_number = "interpolation failure !!!! Result is Nan!!\n";
  using CASE = std::tuple<std::vector<double>, double, std::string>;
  for (const auto& [abscissae, x, text] :
       {CASE{{0, 1, 2}, std::nextafter(0, -1), outside},
        CASE{{0, 1, 2}, std::nextafter(2, 3), outside}, CASE{{0, 1, 2}, std::nan(""), no_number},
        CASE{{0, 1, 1, 2}, 0.5, no_number}}) {
    const auto hermite = Built<HERMITE_POLY<double>>(0, At<DPOINT<double>>(abscissae));
    EXPECT_EXIT(hermite.GetY(x), testing::ExitedWithCode(1), "") << x;
    EXPECT_EQ(TakeLog(), text) << x;
  }
}

// Of two neighbours the lower one has the limit; outside the limits the outer ones go on.
TEST_F(InterpolatorsTest, LocalPiecesAnswerAroundTheirCentresAndAreTold) {
  const std::vector<double> all = {0, 1, 2, 4, 6, 7, 8, 10, 11, 12};
  using CASE = std::tuple<int, int, std::vector<double>>;
  for (const auto& [n, points, limits] :
       {CASE{10, 5, {0, 3, 5, 6.5, 7.5, 9, 10.5}}, CASE{10, 8, {0, 6, 7, 8}},
        CASE{10, 9, {0, 6.5, 7.5}}, CASE{4, 1, {0, 0.5, 1.5, 3, 4}}, CASE{3, 5, {0, 2}}}) {
    const auto series = Series<double>({all.begin(), all.begin() + n}, WAVE);
    LOCAL<POLYNOM, POINT>::OF<double> local;
    local.SetSupportPoints(points);
    TakeLog();
    local.Create(series);
    const int c = std::min(n, points);
    for (int i = 0; i + c <= n; ++i) {
      const double start = limits[i], stop = limits[i + 1];
      const auto support = Series<double>({all.begin() + i, all.begin() + i + c}, WAVE);
      const auto piece = Built<POLYNOM<double>>(0, support);
      std::vector<double> abscissae = {std::nextafter(start, 99), (start + stop) / 2, stop};
      if (i == 0) abscissae.insert(abscissae.end(), {start, start - 9});
      if (i + c == n) abscissae.push_back(stop + 9);
      for (const double x : abscissae) {
        EXPECT_EQ(local.GetY(x), piece.GetY(x)) << x;
        EXPECT_EQ(local.GetCoeffs(x)[c - 1], piece.GetCoeffs()[c - 1]) << x;
      }
    }
  }
  EXPECT_EQ(TakeLines(),
            "WARN  LOCAL_INTERPOLATION: change support_point_count from 5 to 3\n"
            "PARAM LOCAL_INTERPOLATION: polynom count; 1\n"
            "PARAM idx_start=0 idx_stop=2 t_start=0.000000 t_stop=2.000000\n");
}

}  // namespace
}  // namespace varnoth::test
