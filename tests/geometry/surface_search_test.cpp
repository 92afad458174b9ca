#include "geometry/geolocation_search.hpp"

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

double Level(void* /*context*/, double, double, double) { return 0; }

TEST_F(LoggedTest, AFailedSearchThrowsATextAndGivesNothing) {
  const std::string name = "geolocation_new: No intersection with earth (initial value).";
  const auto expect = [](SEARCH search, const STATE& s, double range, double los,
                         const std::string& text) {
    FOUND f;
    f.los = los;
    EXPECT_EQ(ThrownText([&] { f.Search(search, Level, s, true, 1, range); }), text);
    EXPECT_EQ(f.point[0] + f.latitude + f.longitude + f.height, -4);
  };
  expect(NEW, RISING, 5e5, 0, "geolocation_new: Vertical velocity not allowed (v_tan=0)!");
  expect(NEW, EQUATORIAL, 5e5, 0, name);
  expect(NEW, EQUATORIAL, 9e5, 5001, name);  // faster than the satellite
  expect(TEST_SOLVER, EQUATORIAL, 5e5, 0,
         "geolocation_test: No intersection with earth (negative radiant).");
}

double Swinging(void* context, double, double, double) {
  const int call = ++*static_cast<int*>(context);
  return call < 21 && call % 2 == 0 ? 1e3 : 0;
}

TEST_F(LoggedTest, ASearchThatSwingsGoesOnFromTheMiddle) {
  FOUND found;
  found.Search(TEST_SOLVER, Swinging, EQUATORIAL, true, 1, 9e5);
  EXPECT_GT(found.calls, 20);
  EXPECT_TRUE(TakeLog().starts_with("geolocation_test: Alternating points detected"));
}

}  // namespace
}  // namespace varnoth::test
