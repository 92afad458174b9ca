#include <array>

#include "interpolation/hermite_poly.hpp"
#include "interpolation/known_series.hpp"
#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom.hpp"
#include "interpolation/spline.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using PiecesTest = LoggedTest;
using HermiteDeathTest = LoggedTest;
template <class T>
class PiecesOf : public testing::Test {};
using ELEMENTS = testing::Types<float, double>;
TYPED_TEST_SUITE(PiecesOf, ELEMENTS);

// Only the natural spline is smooth and cubic between the samples: there the increase is the
// Simpson sum of the slopes, and the second derivative is straight. Over steps of 1/4 a rounding
// weighs up to 6 / h² = 96.
TYPED_TEST(PiecesOf, ASplineIsSmoothNaturalAndCubic) {
  using T = TypeParam;
  for (std::vector<T> x = {-1, -0.75, -0.5, 0, 1, 1.5, 2}; x.size() >= 3; x.pop_back()) {
    const auto series = Series(x, [](T t) { return Known(6, 0, t); });
    const auto spline = Built<SPLINE<T>>(0, series);
    const auto values = [&](T t) {
      return std::array<T, 3>{spline.GetY(t), spline.GetDerivedY(t), spline.GetDerived2Y(t)};
    };
    for (std::size_t r = 0; r + 1 < x.size(); ++r) {
      const T end = std::nextafter(x[r + 1], x[r]);
      const T h = end - x[r];
      const auto left = values(x[r]), middle = values(x[r] + h / 2), right = values(end);
      const auto next = values(x[r + 1]);
      EXPECT_EQ(left[0], series.GetElementBase(0)[r].y);
      for (unsigned d = 0; d < 3; ++d) EXPECT_LT(Roundings(right[d], next[d]), 96) << d << x[r];
      const T simpson_sum = h / 6 * (left[1] + 4 * middle[1] + right[1]);
      EXPECT_LT(Roundings(right[0] - left[0], simpson_sum), 96);
      EXPECT_LT(Roundings(right[1] - left[1], h / 2 * (left[2] + right[2])), 96);
      EXPECT_LT(Roundings(middle[2], (left[2] + right[2]) / 2), 96);
    }
    EXPECT_LT(Roundings(spline.GetY(x.back()), Known(6, 0, x.back())), 4);
    EXPECT_EQ(spline.GetDerived2Y(x.front()), 0);
    EXPECT_LT(Roundings(spline.GetDerived2Y(x.back()), 0), 96);
    EXPECT_EQ(values(std::nextafter(x.front(), T(-2))), (std::array<T, 3>{}));
    EXPECT_EQ(values(std::nextafter(x.back(), T(3))), (std::array<T, 3>{}));
  }
}

// The samples weigh up to 3, 11 and 192, with some roundings each.
TYPED_TEST(PiecesOf, AHermitePolynomialOfNSamplesHasDegree2NMinus1) {
  using T = TypeParam;
  for (std::vector<T> x = {-1, -0.25, 0.5, 1.5}; !x.empty(); x.pop_back()) {
    const int degree = 2 * static_cast<int>(x.size()) - 1;
    const auto hermite = Built<HERMITE_POLY<T>>(0, SeriesWithSlopes(x, degree));
    for (T t = -1; t <= x.back(); t += T(0.125)) {
      EXPECT_LT(Roundings(hermite.GetY(t), Known(degree, 0, t)), 4 * 3) << t;
      EXPECT_LT(Roundings(hermite.GetDerivedY(t), Known(degree, 1, t)), 4 * 11) << t;
      EXPECT_LT(Roundings(hermite.GetDerived2Y(t), Known(degree, 2, t)), 4 * 192) << t;
    }
  }
}

// What stands at the other samples would spoil the result.
TEST(HermiteTest, EvaluateTakesTheSamplesAroundThePoint) {
  using CASE = std::tuple<int, int, double, int>;
  for (const auto& [n, order, x, start] :
       {CASE{6, 2, 0, 0}, CASE{6, 2, 1.6, 2}, CASE{6, 2, 1.5, 1}, CASE{6, 2, 4, 4},
        CASE{6, 3, 0, 0}, CASE{6, 3, 1.6, 2}, CASE{6, 3, 3.5, 3}, CASE{6, 4, 4, 2},
        CASE{4, 3, 2, 1}, CASE{3, 1, 1.2, 2}}) {
    const int degree = 2 * order - 1;
    auto series = SeriesWithSlopes<double>({0, 1, 1.5, 2, 3, 4}, degree);
    for (int i = 0; i < 6; ++i) {
      if (i < start || i >= start + order) series.GetElementBase(0)[i].y = 1e9;
    }
    double y[3];
    Built<HERMITE_POLY<double>>(0, series).Evaluate(n, order, y[0], y[1], y[2], x);
    for (int d = 0; d < 3; ++d) {
      // The samples at 2, 3 and 4 weigh up to 6e4 in a second derivative.
      EXPECT_LT(Roundings(y[d], Known(degree, d, x)), 1e5) << order << " " << x << " " << d;
    }
  }
}

TEST_F(HermiteDeathTest, WhatHasNoValueEndsTheProcess) {
  const std::string outside = "interpolation point outside of data constraints\n";
  const std::string no_number = "interpolation failure !!!! Result is Nan!!\n";
  using CASE = std::tuple<std::vector<double>, double, std::string>;
  for (const auto& [abscissae, x, text] :
       {CASE{{0, 1, 2}, std::nextafter(0, -1), outside},
        CASE{{0, 1, 2}, std::nextafter(2, 3), outside}, CASE{{0, 1, 2}, std::nan(""), no_number},
        CASE{{0, 1, 1, 2}, 0.5, no_number}}) {
    const auto hermite = Built<HERMITE_POLY<double>>(0, SeriesWithSlopes(abscissae, 3));
    EXPECT_EXIT(hermite.GetY(x), testing::ExitedWithCode(1), "") << x;
    EXPECT_EQ(TakeLog(), text) << x;
  }
}

using LOCAL_POLYNOM = LOCAL<POLYNOM, POINT>::OF<double>;
constexpr double (*SINE)(double) = std::sin;

// Of two neighbours the lower one has the limit; outside the limits the outer ones go on.
TEST_F(PiecesTest, LocalPiecesAnswerAroundTheirCentres) {
  const std::vector<double> all = {0, 1, 2, 4, 6, 7, 8, 10, 11, 12};
  using CASE = std::tuple<int, int, std::vector<double>>;
  for (const auto& [n, points, limits] :
       {CASE{10, 5, {0, 3, 5, 6.5, 7.5, 9, 10.5}}, CASE{3, 5, {0, 2}}, CASE{10, 8, {0, 6, 7, 8}},
        CASE{10, 9, {0, 6.5, 7.5}}, CASE{4, 1, {0, 0.5, 1.5, 3, 4}}}) {
    const auto series = Series<double>({all.begin(), all.begin() + n}, SINE);
    LOCAL_POLYNOM local;
    local.SetSupportPoints(points);
    local.Create(series);
    const int c = std::min(n, points);
    std::string log;
    if (c < points) log = "LOCAL_INTERPOLATION: change support_point_count from 5 to 3\n";
    log += "LOCAL_INTERPOLATION: polynom count; " + std::to_string(limits.size() - 1) + "\n";
    for (int i = 0; i + c <= n; ++i) {
      const double start = limits[i], stop = limits[i + 1];
      log += "idx_start=" + std::to_string(i) + " idx_stop=" + std::to_string(i + c - 1) +
             " t_start=" + std::to_string(start) + " t_stop=" + std::to_string(stop) + "\n";
      const auto support = Series<double>({all.begin() + i, all.begin() + i + c}, SINE);
      const auto piece = Built<POLYNOM<double>>(0, support);
      std::vector<double> abscissae = {std::nextafter(start, 99), (start + stop) / 2, stop};
      if (i == 0) abscissae.insert(abscissae.end(), {start, start - 9});
      if (i + c == n) abscissae.push_back(stop + 9);
      for (const double x : abscissae) {
        EXPECT_EQ(local.GetY(x), piece.GetY(x)) << x;
        EXPECT_EQ(local.GetDerivedY(x), piece.GetDerivedY(x)) << x;
        EXPECT_EQ(local.GetDerived2Y(x), piece.GetDerived2Y(x)) << x;
        EXPECT_EQ(local.GetCoeffs(x)[c - 1], piece.GetCoeffs()[c - 1]) << x;
      }
    }
    EXPECT_EQ(TakeLog(), log);
  }
}

TEST_F(PiecesTest, SeriesThatCanNotBeInterpolatedAreRefused) {
  using SERIES = std::initializer_list<std::vector<double>>;
  const auto expect = [&]<class I>(I interpolator, const SERIES& all, const std::string& text) {
    for (const auto& abscissae : all) {
      ARRAY<typename I::SAMPLE> series(0, static_cast<int>(abscissae.size()));
      auto* next = series.GetElementBase(0);
      for (const double x : abscissae) next++->x = x;
      interpolator.SetOrder(2);
      EXPECT_THROW(interpolator.Create(series), INVALID_PARAMETER_VALUE) << text;
      EXPECT_EQ(TakeLog(), text);
    }
  };
  const double nan = std::nan("");
  const SPLINE<double> spline;
  LOCAL_POLYNOM local;
  expect(spline, {{}, {0, 1}}, "SPLINE::Create: more than 2 values needed.\n");
  expect(spline, {{0, 1, 1}, {0, 2, 1, 3}, {0, nan, 1}},
         "SPLINE::Create: the abscissae do not increase.\n");
  expect(HERMITE_POLY<double>(), {{}}, "HERMITE_POLY::Create: there are no samples.\n");
  expect(local, {{}}, "LOCAL_INTERPOLATION: there are no samples.\n");
  expect(local, {{0, 2, 1}, {0, nan, 2}}, "LOCAL_INTERPOLATION: the abscissae decrease.\n");
  local.SetSupportPoints(0);
  expect(local, {{0, 1}}, "LOCAL_INTERPOLATION: no piece has 0 support points.\n");
}

}  // namespace
}  // namespace varnoth::test
