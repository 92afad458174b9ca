#include "geometry/geolocation_search.hpp"

#include <sstream>

#include "geometry/satellite_passes.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using SEARCH = void (*)(GEOLOCATION_WORK&, const double*, SURFACE_HEIGHT, const double*,
                        const double*, bool, double&, double&, double*, double&, double&, double&,
                        double, double);
const SEARCH NEW = [](auto... arguments) { geolocation_new(arguments...); };
const SEARCH TEST_SOLVER = geolocation_test;

constexpr double FIGURE[] = {EQUATOR, POLE, EQUATOR* EQUATOR, POLE* POLE};

struct FOUND : TARGET {
  double height = -1, los = 0, squint = 1;
  int calls = 0;  ///< of the surface function, whose context it is

  void Search(SEARCH search, SURFACE_HEIGHT surface, const STATE& s, bool doppler, double side,
              double range, double tolerance_factor = 0) {
    GEOLOCATION_WORK work{};
    work.context = &calls;
    work.tolerance_factor = tolerance_factor;
    search(work, FIGURE, surface, s.position, s.velocity, doppler, los, squint, point, latitude,
           longitude, height, side, range);
  }
};

double HeightOfHills(double latitude, double longitude) {
  return 500 + 400 * std::sin(700 * latitude) * std::cos(600 * longitude);
}
double Hills(void* context, double latitude, double longitude, double n) {
  ++*static_cast<int*>(context);
  EXPECT_LE(std::fabs(longitude), PI);
  EXPECT_NEAR(n * n, 1 - (1 - FIGURE[3] / FIGURE[2]) * std::pow(std::sin(latitude), 2), 1e-15);
  return HeightOfHills(latitude, longitude);
}

TEST(SurfaceSearch, FollowsTheTerrainByDopplerAndBySquint) {
  for (int i = 0; i < 8 * 2 * 2; ++i) {
    const STATE& s = PASSES[i / 4];
    const SEARCH search = (i & 1) != 0 ? NEW : TEST_SOLVER;
    const double side = (i & 2) != 0 ? 1 : -1, found = search == NEW ? 1 : side;
    const double range = SlantRange(s, 500, POLE, 0.59);
    FOUND one, again, rough;
    one.los = rough.los = 200;
    // No height is as exact as 1e-3 roundings: the steps come to rest at one point or between two.
    one.Search(search, Hills, s, true, side, range, search == NEW ? 1e-3 : 0);
    EXPECT_NEAR(one.height, HeightOfHills(one.latitude * RADIANS, one.longitude * RADIANS), 1e-8);
    one.ExpectLaws(s, found, range, 200, EQUATOR, POLE, one.height, 6e-8);
    // By the squint of that point the search finds it again.
    again.squint = one.squint;
    again.Search(search, Hills, s, false, found, range);
    // The hills and the pole multiply what is found to 6e-8 m.
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(again.point[k], one.point[k], 1e-6);
    EXPECT_NEAR(again.los, search == NEW ? 0 : 200, 1e-8);
    rough.Search(search, Hills, s, true, side, range, 1e9);  // roundings of 7e6 m
    rough.ExpectLaws(s, found, range, 200, EQUATOR, POLE, rough.height, 1.6);
    EXPECT_LT(rough.calls, one.calls);
  }
}

TEST_F(LoggedTest, APointBelowTheSatelliteHasNoSquint) {
  FOUND found;
  found.Search(NEW, Hills, EQUATORIAL, true, 1, 7e6 - EQUATOR - 500);
  EXPECT_EQ(found.squint, 1e42);
  EXPECT_EQ(TakeLog(), "geolocation_new: 1 iterations.\n");  // the start was the point
}

/// A surface by the number of the call.
template <auto HEIGHT>
double Counted(void* context, double /*latitude*/, double /*longitude*/, double /*n*/) {
  return HEIGHT(++*static_cast<int*>(context));
}
const SURFACE_HEIGHT LEVEL = Counted<[](int) { return 0.0; }>;
const SURFACE_HEIGHT SWINGING = Counted<[](int n) { return n < 21 && n % 2 == 0 ? 1e3 : 0.0; }>;
const SURFACE_HEIGHT TURNING = Counted<[](int n) { return 1e3 * (n % 3); }>;
const SURFACE_HEIGHT ABYSS = Counted<[](int n) { return n == 1 ? 1e9 : -1e6; }>;

TEST_F(LoggedTest, AFailedSearchIsToldAndThrowsAText) {
  const std::string vertical = "@: Vertical velocity not allowed (v_tan=0)";
  const std::string initial = "@: No intersection with earth (initial value).\n";
  const std::string outside =
      "@: No intersection of earth ellipsoid and sphere around the satellite\n";
  const std::string step = "@: during iteration in step: ";
  const std::string called =
      "@ was called with look_direction 1.000000 height 0.000000 rpole 6356752.314200 requator "
      "6378137.000000 slant_range 500000.000000 sat_pos (7000000.000000,";
  // What is thrown, and on the following lines what is logged first.
  const auto expect = [&](SEARCH search, SURFACE_HEIGHT surface, const STATE& s, double range,
                          double los, int calls, const std::string& told) {
    const std::string name = search == NEW ? "geolocation_new" : "geolocation_test";
    for (const bool doppler : {true, los != 0}) {
      FOUND f;
      f.los = los;
      std::string what = ThrownText([&] { f.Search(search, surface, s, doppler, 1, range); });
      what = Replaced(what + "\n" + TakeLog(), name, "@");
      EXPECT_EQ(what.substr(0, told.size()), told);
      EXPECT_EQ(f.calls, calls) << told;
      EXPECT_EQ(f.point[0] + f.latitude + f.longitude + f.height, -4);
    }
  };
  expect(NEW, LEVEL, RISING, 5e5, 0, 0, vertical + "!\n" + vertical + "\n" + called);
  expect(TEST_SOLVER, LEVEL, RISING, 5e5, 0, 0,
         vertical + "!\n" + vertical + "\n" + step + "1\n" + called);
  expect(NEW, LEVEL, EQUATORIAL, 5e5, 0, 2, initial + outside + called);
  expect(TEST_SOLVER, LEVEL, EQUATORIAL, 5e5, 0, 1,
         "@: No intersection with earth (negative radiant).\n" + outside + step + "2\n" + called);
  expect(NEW, ABYSS, EQUATORIAL, 9e5, 0, 103, "Error.\n@: Convergence problem.\n");
  expect(TEST_SOLVER, TURNING, EQUATORIAL, 9e5, 0, 50,
         "@: Convergence problem!\n@: convergence problem. Residual error after 50 iterations: ");
  // Faster than the satellite, and faster than its way along the track.
  expect(NEW, LEVEL, EQUATORIAL, 9e5, 5001, 0, initial);
  expect(NEW, LEVEL, {{7e6, 0, 0}, {-4e3, 3e3, 0}}, 2e6, 4500, 1, initial);
}

TEST_F(LoggedTest, ASearchThatSwingsGoesOnFromTheMiddle) {
  FOUND found;
  found.Search(TEST_SOLVER, SWINGING, EQUATORIAL, true, 1, 9e5);
  const std::string swing = "geolocation_test: Alternating points detected in interation ";
  std::istringstream log(TakeLog());
  std::string line;
  int swings = 0;
  for (; std::getline(log, line) && line.starts_with(swing); ++swings) {
    EXPECT_NE(line.find(" at radius change 1000."), line.npos);
    EXPECT_TRUE(line.ends_with(". Selecting new value in the middle."));
  }
  // From the middle the search is not back in its swing with the next step.
  EXPECT_TRUE(swings > 0 && swings < 10 && found.calls > 20) << swings;
  EXPECT_EQ(line, "geolocation_test: " + std::to_string(found.calls) + " iterations.");
}

}  // namespace
}  // namespace varnoth::test
