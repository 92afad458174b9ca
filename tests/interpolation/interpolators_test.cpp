#include <array>
#include <cmath>
#include <vector>

#include "interpolation/cheby_poly.hpp"
#include "interpolation/everett.hpp"
#include "interpolation/hermite_poly.hpp"
#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom.hpp"
#include "interpolation/polynom_fit.hpp"
#include "interpolation/spline.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using ABSCISSAE = std::vector<double>;
const ABSCISSAE GRID = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};
double Fourth(double x) { return x * x * x * x; }
double Cosine(double x) { return std::cos(x); }

/// The samples of f at the abscissae, from index `first` on.
template <class P = POINT<double>, class F>
ARRAY<P> Series(const ABSCISSAE& abscissae, F f, int first = 0) {
  using T = decltype(P::x);
  ARRAY<P> series(first, static_cast<int>(abscissae.size()));
  P* next = series.GetElementBase(0);
  for (const double x : abscissae) {
    next->x = static_cast<T>(x);
    next->y = static_cast<T>(f(next->x));
    ++next;
  }
  return series;
}

template <class INTERPOLATOR>
INTERPOLATOR Built(int order, const ARRAY<typename INTERPOLATOR::SAMPLE>& series) {
  INTERPOLATOR interpolator;
  interpolator.SetOrder(order);
  interpolator.CreateQuiet(series);
  return interpolator;
}
constexpr auto Everett = Built<EVERETT<double>>;

using InterpolatorsTest = LoggedTest;
using InterpolatorsDeathTest = LoggedTest;

TEST_F(InterpolatorsTest, WhatAnInterpolatorLacksIsRefusedAndTold) {
  const INTERPOLATION<double, POINT<double>> none;
  EXPECT_THROW(none.GetY(1), ERROR_ALGORITHM);
  EXPECT_THROW(none.GetDerivedY(1), ERROR_ALGORITHM);
  EXPECT_THROW(none.GetDerived2Y(1), ERROR_ALGORITHM);
  EXPECT_THROW(none.GetCoeffs(), ERROR_ALGORITHM);
  EXPECT_EQ(TakeLines(),
            "ALARM INTERPOLATION::GetY() shell not be called\n"
            "ALARM INTERPOLATION::GetDerivedY() shell not be called\n"
            "ALARM INTERPOLATION::GetDerived2Y() shell not be called\n"
            "ALARM INTERPOLATION::GetCoeffs() shall not be called\n");
}

TEST_F(InterpolatorsTest, WhatIsNotBuiltHasNoValues) {
  const auto expect = [&](const auto& interpolator) {
    EXPECT_THROW(interpolator.GetY(1), INVALID_PARAMETER_VALUE);
    EXPECT_THROW(interpolator.GetDerivedY(1), INVALID_PARAMETER_VALUE);
    EXPECT_THROW(interpolator.GetDerived2Y(1), INVALID_PARAMETER_VALUE);
  };
  expect(SPLINE<double>()), expect(HERMITE_POLY<double>()), expect(POLYNOM<double>());
  expect(POLYNOM_FIT<double>()), expect(CHEBY_POLY<double>());
  expect(LOCAL<POLYNOM, POINT>::OF<double>());
  expect(Everett(8, Series({0, 1, 2}, Fourth)));
  EXPECT_TRUE(TakeLines().ends_with("ALARM EVERETT::GetXi: 3 samples are too few for order 8.\n"));
}

TEST_F(InterpolatorsTest, EverettTellsItsDifferencesUpToTheOrderThatTheSamplesAllow) {
  EVERETT<double> everett;
  everett.SetOrder(8);
  everett.Create(Series({0, 1, 2}, Fourth, 1));
  const std::string zeros = " 0.000000 0.000000\n";
  EXPECT_EQ(TakeLines(), "TRACE 1 0.000000" + zeros + "TRACE 2 1.000000 14.000000 0.000000\n" +
                             "TRACE 3 16.000000" + zeros);
}

TEST_F(InterpolatorsTest, EverettTakesTheNearestGoodIntervalAndTells) {
  const auto everett = Everett(8, Series(GRID, Fourth));
  const std::string left = "EVERETT::GetXi: Forced interpolation left hand side.\n",
                    right = "EVERETT::GetXi: Forced interpolation right hand side.\n",
                    needed = "EVERETT::GetXi: Extrapolation needed ";
  double r = 0.0, s = 0.0;
  const auto expect = [&](double x, int interval, const std::string& text) {
    EXPECT_EQ(everett.GetXi(x, r, s), interval) << x;
    EXPECT_EQ(TakeLog(), text) << x;
    everett.GetY(x);  // which knows the usual case without GetXi
    EXPECT_EQ(TakeLog(), text) << x;
  };
  expect(3.5, 4, left + needed + "(r=-0.500000, s=1.500000, i=4, ax=3.500000).\n");
  expect(4, 4, "");
  expect(14, 13, right);
  expect(15.5, 13, right + needed + "(r=2.500000, s=-1.500000, i=13, ax=15.500000).\n");
  expect(std::nan(""), 13, right);
  // The last interval that leaves no line lacks its fourth difference, 24, with the weight
  // r (r² - 1) (r² - 4) / 120.
  EXPECT_DOUBLE_EQ(Everett(4, Series(GRID, Fourth)).GetY(14.5), Fourth(14.5));
  EXPECT_DOUBLE_EQ(Everett(4, Series(GRID, Fourth)).GetY(15.5), Fourth(15.5) - 24 * 0.01171875);
  EXPECT_EQ(TakeLog(), "");
  // Intervals count from the first sample, but their bounds are indices of the series.
  EXPECT_EQ(Everett(2, Series(GRID, Fourth, 10)).GetXi(3.5, r, s), 11);
}

TEST_F(InterpolatorsTest, EverettGivesCurvesTogetherWhatEachGivesAlone) {
  ABSCISSAE shifted = GRID, wider = GRID, fewer(GRID.begin(), GRID.end() - 1);
  for (double& x : shifted) x += 0.25;
  for (double& x : wider) x *= 1.25;
  for (const auto& third :
       {Everett(8, Series(GRID, Cosine)), Everett(8, Series(shifted, Cosine)),
        Everett(8, Series(wider, Cosine)), Everett(8, Series(fewer, Cosine)),
        Everett(8, Series(GRID, Cosine, 1)), Everett(8, Series(fewer, Cosine, 1)),
        Everett(4, Series(GRID, Cosine))}) {
    const std::array curves = {Everett(8, Series(GRID, Fourth)), Everett(8, Series(GRID, Cosine)),
                               third};
    for (const double x : {3.6, 4.2, 7.8, 12.9, 13.3, 15.6}) {
      for (const int derivative : {0, 1, 2}) {
        std::array<double, 3> together{}, alone{};
        EVERETT<double>::EvaluateAll(curves.data(), 3, derivative, x, together.data());
        const std::string text = TakeLog();
        for (int c = 0; c < 3; ++c) {
          alone[c] = derivative == 0   ? curves[c].GetY(x)
                     : derivative == 1 ? curves[c].GetDerivedY(x)
                                       : curves[c].GetDerived2Y(x);
        }
        EXPECT_EQ(together, alone) << x << " " << derivative;
        EXPECT_EQ(text, TakeLog()) << x << " " << derivative;
      }
    }
  }
}

TEST_F(InterpolatorsTest, EverettTakesTwoSamplesAndAGridWithinItsTolerance) {
  EXPECT_NO_THROW(Everett(2, Series({0, 5, 10, 15 - 4e-8}, Fourth)));
  for (const int order : {0, 2}) EXPECT_EQ(Everett(order, Series({0, 1}, Fourth)).GetY(0.25), 0.25);
}

TEST_F(InterpolatorsTest, SeriesThatCanNotBeInterpolatedAreRefused) {
  const auto expect = [&]<class I>(I interpolator, int order, const std::vector<ABSCISSAE>& all,
                                   const std::string& text) {
    for (const auto& abscissae : all) {
      interpolator.SetOrder(order);
      const auto series = Series<typename I::SAMPLE>(abscissae, Fourth);
      EXPECT_THROW((interpolator.Create(series), interpolator.GetY(0)), INVALID_PARAMETER_VALUE);
      EXPECT_EQ(TakeLines(), "ALARM " + text + "\n");
    }
  };
  const double nan = std::nan("");
  const std::string name = "EVERETT::Create: ",
                    only = name + "Everett interpolation only possible ";
  const EVERETT<double> everett;
  expect(everett, 2, {{}, {1}}, name + "more than 1 value needed.");
  expect(everett, -1, {{0, 1, 2}}, only + "with even order, not for given order -1.");
  expect(everett, 2, {{5, 5, 5}, {0, nan, 2}, {0, 5, 10 + 6e-8}, {0, 5, 10, 15 - 6e-8}},
         only + "on equidistant grid.");
  const SPLINE<double> spline;
  expect(spline, 2, {{}, {0, 1}}, "SPLINE::Create: more than 2 values needed.");
  expect(spline, 2, {{0, 1, 1}, {0, 2, 1, 3}, {0, nan, 1}},
         "SPLINE::Create: the abscissae do not increase.");
  expect(HERMITE_POLY<double>(), 2, {{}}, "HERMITE_POLY::Create: there are no samples.");
  expect(POLYNOM<double>(), 2, {{}}, "POLYNOM: there are no samples.");
  expect(POLYNOM_FIT<double>(), 2, {{}}, "POLYFIT: there are no samples.");
  expect(CHEBY_POLY<double>(), 2, {{}}, "CHEBY_POLY::Create: there are no samples.");
  expect(CHEBY_POLY<double>(), 2, {{0, nan, 1}}, "CHEBY_POLY::Create: an abscissa is no number.");
  expect(POLYNOM_FIT<double>(), -1, {{0, 1}}, "POLYFIT: there is no polynomial of order -1");
  LOCAL<POLYNOM, POINT>::OF<double> local;
  expect(local, 2, {{}}, "LOCAL_INTERPOLATION: there are no samples.");
  expect(local, 2, {{0, 2, 1}, {0, nan, 2}}, "LOCAL_INTERPOLATION: the abscissae decrease.");
  local.SetSupportPoints(0);
  expect(local, 2, {{0, 1}}, "LOCAL_INTERPOLATION: no piece has 0 support points.");
}

// The squared distances of 0, 1 and 16 from their mean add up to 257 - 17² / 3.
TEST_F(InterpolatorsTest, AFitTellsItsOrderAndItsResidual) {
  const auto fourths = Series({0, 1, 2}, Fourth);
  POLYNOM_FIT<double>().Create(fourths);
  EXPECT_EQ(TakeLines(),
            "PARAM POLYFIT: polynomial fit order = 0\nPARAM POLYFIT: chi^2 = 160.666667\n");
  CHEBY_POLY<double> mean;
  mean.Create(fourths);
  EXPECT_EQ(TakeLines(), "PARAM CHEBY_POLY::Create: chi^2 = 160.666667\n");
  EXPECT_NEAR(mean.GetCoeffs()[0], 17.0 / 3, 1e-14);  // rounding of 16
}

// Through 0, 1, 2, 3, 4 the coefficients of x⁴ are 0, 1, 7, 6, 1. With the nodes 0, 1, 2 in each
// step the second derivative comes to 2 ((x - 2)(3x + 3) + (x - 1)(2x + 5) + x² + 6x + 7).
TEST(PolynomTest, ItsSecondDerivativeIsAnotherOneFromDegreeFourOn) {
  const auto series = Series({0, 1, 2, 3, 4}, Fourth);
  const auto polynom = Built<POLYNOM<double>>(0, series);
  EXPECT_EQ(polynom.GetCoeffs()[2], 7.0);
  for (const double x : {0.0, 2.5}) EXPECT_EQ(polynom.GetDerived2Y(x), 12 * x * x + 12 * x - 8);
}

// The singular values of a line over 0, h, 2h are as 0.8 h to 1. Through 1, 2, 3 it starts at 1, or
// without its slope at the mean; 0.01 tells them apart.
TEST(PolynomFitTest, LeavesOutADirectionBelowItsTolerance) {
  const auto start = []<class T>(T h) {
    const double step = static_cast<double>(h);
    const auto series = Series<POINT<T>>({0, step, 2 * step}, [&](T x) { return 1 + x / h; });
    return static_cast<double>(Built<POLYNOM_FIT<T>>(1, series).GetY(0));
  };
  EXPECT_NEAR(start(5e-6F), 2, 0.01);
  EXPECT_NEAR(start(5e-5F), 1, 0.01);
  EXPECT_NEAR(start(5e-15), 2, 0.01);
  EXPECT_NEAR(start(5e-14), 1, 0.01);
  EXPECT_NEAR(start(1e-16L), 1, 0.01);
  EXPECT_EQ(Built<POLYNOM_FIT<double>>(1, Series({0, 0, 0}, Cosine)).GetY(3), 1);
}

// A curve that is cubic between its samples, smooth and without curvature at both ends is the
// natural spline through them. This one is 1 - x/2 and a cube from each sample on.
TEST_F(InterpolatorsTest, ASplineFindsTheCurvesThatAreNaturalSplines) {
  struct CASE {
    ABSCISSAE samples, cubes;
  };
  for (const CASE& c : {CASE{{0, 1, 3}, {2, -3, 0}}, CASE{{-1, -0.5, 1, 2}, {1, -2, 2, 0}}}) {
    const ABSCISSAE &samples = c.samples, &cubes = c.cubes;
    const auto curve = [&](double x) {
      std::array<double, 3> all = {1 - x / 2, -0.5, 0};
      for (std::size_t i = 0; i < samples.size(); ++i) {
        const double t = std::max(x - samples[i], 0.0);
        all[0] += cubes[i] * t * t * t;
        all[1] += cubes[i] * t * t * 3;
        all[2] += cubes[i] * t * 6;
      }
      return all;
    };
    const auto series = Series(samples, [&](double x) { return curve(x)[0]; });
    const auto spline = Built<SPLINE<double>>(0, series);
    const auto values = [&](double x) -> std::array<double, 3> {
      return {spline.GetY(x), spline.GetDerivedY(x), spline.GetDerived2Y(x)};
    };
    for (double x = samples.front(); x <= samples.back(); x += 0.125) {
      for (std::size_t d = 0; d < 3; ++d) EXPECT_NEAR(values(x)[d], curve(x)[d], 1e-13) << x;
    }
    EXPECT_EQ(values(samples.front() - 1e-9), (std::array<double, 3>{}));
    EXPECT_EQ(values(samples.back() + 1e-9), (std::array<double, 3>{}));
    EXPECT_EQ(spline.GetCoeffs(), nullptr);
    EXPECT_EQ(TakeLines(), "WARN  SPLINE::GetCoeffs() makes no sense\n");
  }
}

// N samples carry the degree 2N - 1. What stands at the others would spoil the result. The samples
// at 2, 3 and 4 weigh up to 6e4 in a second derivative.
TEST(HermiteTest, EvaluateTakesTheSamplesAroundThePoint) {
  using CASE = std::tuple<int, int, double, int>;
  for (const auto& [n, order, x, start] :
       {CASE{6, 2, 0, 0}, CASE{6, 2, 1.6, 2}, CASE{6, 2, 1.5, 1}, CASE{6, 2, 4, 4},
        CASE{6, 3, 1.6, 2}, CASE{6, 3, 3.5, 3}, CASE{6, 4, 4, 2}, CASE{4, 3, 2, 1},
        CASE{3, 1, 1.2, 2}, CASE{1, 1, 0, 0}}) {
    const double degree = 2 * order - 1;
    const auto value = [&](double t) { return std::pow(1 + t / 4, degree); };
    const auto series = Series<DPOINT<double>>({0, 1, 1.5, 2, 3, 4}, value);
    for (int i = 0; i < 6; ++i) {
      DPOINT<double>& p = series.GetElementBase(0)[i];
      p.dy = degree * p.y / (4 + p.x);
      if (i < start || i >= start + order) p.y = 1e9;
    }
    double y, dy, d2y;
    Built<HERMITE_POLY<double>>(0, series).Evaluate(n, order, y, dy, d2y, x);
    EXPECT_NEAR(y, value(x), 1e-10) << x;
    EXPECT_NEAR(dy, degree * y / (4 + x), 1e-10) << x;
    EXPECT_NEAR(d2y, (degree - 1) * dy / (4 + x), 1e-10) << x;
  }
}

TEST_F(InterpolatorsDeathTest, WhatHasNoValueEndsTheProcess) {
  const auto expect = [&](const ABSCISSAE& abscissae, double x, const char* text) {
    const auto hermite = Built<HERMITE_POLY<double>>(0, Series<DPOINT<double>>(abscissae, Fourth));
    EXPECT_EXIT(hermite.GetY(x), testing::ExitedWithCode(1), "") << x;
    EXPECT_EQ(TakeLines(), text) << x;
  };
  const char* const outside = "ALARM interpolation point outside of data constraints\n";
  expect({0, 1, 2}, std::nextafter(0, -1), outside);
  expect({0, 1, 2}, std::nextafter(2, 3), outside);
  const char* const no_number = "WARN  interpolation failure !!!! Result is Nan!!\n";
  expect({0, 1, 2}, std::nan(""), no_number);
  expect({0, 1, 1, 2}, 0.5, no_number);
}

// Of two neighbouring pieces the lower one has the limit; outside the limits the outer ones go on.
TEST_F(InterpolatorsTest, LocalPiecesAnswerAroundTheirCentresAndAreTold) {
  const ABSCISSAE all = {0, 1, 2, 4, 6, 7, 8, 10, 11, 12};
  using CASE = std::tuple<int, int, ABSCISSAE>;
  for (const auto& [n, points, limits] :
       {CASE{10, 5, {0, 3, 5, 6.5, 7.5, 9, 10.5}}, CASE{10, 8, {0, 6, 7, 8}},
        CASE{10, 9, {0, 6.5, 7.5}}, CASE{4, 1, {0, 0.5, 1.5, 3, 4}}, CASE{3, 5, {0, 2}}}) {
    const auto series = Series({all.begin(), all.begin() + n}, Cosine);
    LOCAL<POLYNOM, POINT>::OF<double> local;
    local.SetSupportPoints(points);
    TakeLog();
    local.Create(series);
    const int c = std::min(n, points);
    for (int i = 0; i + c <= n; ++i) {
      const double start = limits[i], stop = limits[i + 1];
      const auto support = Series({all.begin() + i, all.begin() + i + c}, Cosine);
      const double wanted = Built<POLYNOM<double>>(0, support).GetCoeffs()[c - 1];
      ABSCISSAE abscissae = {std::nextafter(start, 99), (start + stop) / 2, stop};
      if (i == 0) abscissae.insert(abscissae.end(), {start, start - 9});
      if (i + c == n) abscissae.push_back(stop + 9);
      for (const double x : abscissae) EXPECT_EQ(local.GetCoeffs(x)[c - 1], wanted) << x;
      EXPECT_TRUE(i > 0 || local.GetCoeffs()[c - 1] == wanted);
    }
  }
  EXPECT_EQ(TakeLines(),
            "WARN  LOCAL_INTERPOLATION: change support_point_count from 5 to 3\n"
            "PARAM LOCAL_INTERPOLATION: polynom count; 1\n"
            "PARAM idx_start=0 idx_stop=2 t_start=0.000000 t_stop=2.000000\n");
}

}  // namespace
}  // namespace varnoth::test
