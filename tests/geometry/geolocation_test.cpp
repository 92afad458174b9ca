#include <cmath>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "geometry/geolocation.hpp"
#include "geometry/geolocation_fast.hpp"
#include "geometry/geolocation_search.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

constexpr double EQUATOR = 6378137.0, POLE = 6356752.3142, RADIANS = PI / 180;

struct STATE {
  double position[3], velocity[3];
};

constexpr STATE EQUATORIAL{{7e6, 0, 0}, {0, 3e3, 4e3}}, RISING{{7e6, 0, 0}, {5e3, 0, 0}};
constexpr STATE PASSES[] = {{{3e6, 5e6, 4e6}, {-4e3, -2.1e3, 5.5e3}},  // ascending
                            {{-6e6, 2e5, 3.6e6}, {-3e3, -2e3, -5e3}},  // the date line
                            {{4e6, -4e6, -4e6}, {-4e3, -4e3, 100}},    // west
                            {{7e6, 0, 0}, {0, 7.5e3, 0}},              // due east
                            {{7e6, 0, 0}, {0, 0, -7.5e3}},             // due south
                            {{0, 7e6, 0}, {0, 50, 7.5e3}},             // north over y
                            {{0, -6.5e6, 2.5e6}, {-7.4e3, 300, 800}},  // west over -y
                            {{6e5, 3e5, 6.97e6}, {7.5e3, 100, 0}}};    // near the pole

/// Range of about the wanted incidence angle (radians).
double SlantRange(const STATE& state, double height, double rpole, double incidence) {
  const double *const s = state.position, r = Length(s);
  const double ground = height + r / std::hypot(s[0] / EQUATOR, s[1] / EQUATOR, s[2] / rpole);
  return std::sqrt(r * r - std::pow(ground * std::sin(incidence), 2)) -
         ground * std::cos(incidence);
}

void OnVectors(GEOLOCATION_WORK& work, const double* p, const double* v, double* to, auto... rest) {
  VECTOR<double> position(1, 3), velocity(0, 3), found;
  std::copy_n(p, 3, position.GetElementBase(0));
  std::copy_n(v, 3, velocity.GetElementBase(0));
  geolocation(work, position, velocity, found, rest...);
  EXPECT_EQ(found.GetFirstIndex(), 1);
  std::copy_n(found.GetElementBase(0), 3, to);
}

struct SOLVER {
  const char* name;
  decltype(&geolocation_fast) solve;
  bool raises;  ///< the ellipsoid, while the others take the parallel surface
  bool always_right = false;
};
const SOLVER AT_HEIGHTS[] = {{"geolocation_fast", geolocation_fast, true},
                             {"geolocation", OnVectors, true},
                             {"geolocation_new", geolocation_new, false, true},
                             {"geolocation_test", geolocation_test, false}};

using SEARCH = void (*)(GEOLOCATION_WORK&, const double*, SURFACE_HEIGHT, const double*,
                        const double*, bool, double&, double&, double*, double&, double&, double&,
                        double, double);
const SEARCH NEW = [](auto... arguments) { geolocation_new(arguments...); };
const SEARCH TEST_SOLVER = geolocation_test;

constexpr double FIGURE[] = {EQUATOR, POLE, EQUATOR* EQUATOR, POLE* POLE};

/// What a solver finds, and the laws for it.
struct FOUND {
  double point[3] = {-1, -1, -1}, latitude = -1, longitude = -1, heading = -1, incidence = -1;
  double elevation = -1, line_speed = 0, squint = 1;
  double look[3], right[3], up[3];  ///< ray, across the track, unit normal; set by ExpectLaws
  int calls = 0;                    ///< of the surface function, whose context it is
  GEOLOCATION_WORK work{};

  /// Gives what is thrown.
  std::string Locate(const SOLVER& solver, const STATE& s, double side, double height, double rpole,
                     double range, double los) {
    try {
      return ThrownText([&] {
        solver.solve(work, s.position, s.velocity, point, heading, latitude, longitude, incidence,
                     side, height, rpole, EQUATOR, range * 2 / SPEED_OF_LIGHT, los);
      });
    } catch (const ERROR_EXCEPTION& error) {
      return error.what();
    }
  }

  void Search(SEARCH search, SURFACE_HEIGHT surface, const STATE& s, bool doppler, double side,
              double range, double tolerance_factor = 0) {
    work.context = &calls;
    work.tolerance_factor = tolerance_factor;
    search(work, FIGURE, surface, s.position, s.velocity, doppler, line_speed, squint, point,
           latitude, longitude, elevation, side, range);
  }

  /// The point has the range, the side, the velocity along the ray and the height above the
  /// ellipsoid of radii a and b for its coordinates: its foot along the normal lies on the
  /// ellipsoid, where the gradient has the normal's direction.
  void ExpectLaws(const STATE& s, double side, double range, double los, double a, double b,
                  double height, double bound) {
    Subtract(look, point, s.position);
    EXPECT_NEAR(Length(look), range, 1e-8);  // the stop criterion, 1e-9, and the rounding of 7e6 m
    EXPECT_NEAR(DotProduct(look, s.velocity) / range, los, 1e-8);
    CrossProduct(right, s.velocity, s.position);
    EXPECT_GT(DotProduct(look, right) * side, 0);
    const double phi = latitude * RADIANS, lambda = longitude * RADIANS, axes[3] = {a, a, b};
    up[0] = std::cos(phi) * std::cos(lambda);
    up[1] = std::cos(phi) * std::sin(lambda);
    up[2] = std::sin(phi);
    const double support = std::hypot(a * up[0], a * up[1], b * up[2]);
    bound += 9e-15 * height * height;  // 0.2 e⁶ h²/a, Bowring's latitude
    for (int i = 0; i < 3; ++i) {
      EXPECT_NEAR(point[i] - height * up[i], axes[i] * axes[i] * up[i] / support, bound);
    }
  }
};

TEST_F(LoggedTest, SolversAtAHeightObeyTheDefinitionsAndTellTheirStepsAtTrace) {
  const double incidences[] = {0.17, 0.7, 1.2}, heights[] = {-430, 0, 100, 8848};
  for (int i = 0; i < 4 * 8 * 96; ++i) {
    const SOLVER& solver = AT_HEIGHTS[i / 8 / 96];
    const STATE& state = PASSES[i / 96 % 8];
    const double side = (i & 1) != 0 ? 1 : -1, los = (i & 2) != 0 ? 300 : 0;
    const double rpole = (i & 4) != 0 ? POLE : EQUATOR, height = heights[i / 24 % 4];
    const double range = SlantRange(state, height, rpole, incidences[i / 8 % 3]);
    const double raised = solver.raises ? height : 0;
    FOUND g;
    EXPECT_EQ(g.Locate(solver, state, side, height, rpole, range, los), "nothing thrown");
    EXPECT_EQ(g.work.context, nullptr);
    const std::string told = std::string("TRACE ") + solver.name + ": ";
    EXPECT_TRUE(i % 768 != 0 || TakeLines().find(told) != told.npos) << told;
    // The rounding of angles, 4e-9 m, and in the searches ten times that near a pole.
    g.ExpectLaws(state, solver.always_right ? 1 : side, range, los, EQUATOR + raised,
                 rpole + raised, height - raised, solver.raises ? 2e-8 : 6e-8);
    EXPECT_TRUE(g.longitude >= 0 && g.longitude <= 360) << g.longitude;
    double across[3];
    CrossProduct(across, g.up, g.look);
    // The rounding of the inverse functions; an arc cosine near 1 keeps half the digits.
    EXPECT_NEAR(g.incidence, std::atan2(Length(across), -DotProduct(g.up, g.look)) / RADIANS,
                1e-11);
    const auto& [s, v] = state;
    const double east = (s[0] * v[1] - s[1] * v[0]) * Length(s);
    const double north = v[2] * (s[0] * s[0] + s[1] * s[1]) - s[2] * (s[0] * v[0] + s[1] * v[1]);
    EXPECT_NEAR(g.heading, std::atan2(east, north) / RADIANS + (east < 0 ? 360 : 0), 1e-5);
  }
}

TEST_F(LoggedTest, AFailedGeolocationIsToldInOrderAndLeavesTheOutputsAlone) {
  FOUND ground;
  const std::string head = "ALARM geolocation_fast: ";
  const auto expect = [&](const STATE& state, double height, double range, const std::string& what,
                          const std::string& lines) {
    EXPECT_EQ(ground.Locate(AT_HEIGHTS[0], state, 1, height, POLE, range, 0), what);
    // What a search without end has come to, behind the text, is anybody's guess.
    EXPECT_EQ(TakeLines().substr(0, lines.size()), lines);
  };
  expect({{0, 3e6, -4e6}, {7e3, 0, 0}}, 0, 1e6, "wrong argument",
         head + "satellite position lies within the earth!\n" + head +
             "length of satellite position is: 5000000.000000\n");
  expect({{7e6, NAN, 0}, {0, 7e3, 0}}, 0, 1e6, "case not handled in if or switch block",
         head + "determination of angle theta failed!\n");
  expect(EQUATORIAL, 10, SPEED_OF_LIGHT / 2048, "data error",
         head + "No intersection of earth ellipsoid and sphere around the satellite\n" + head +
             "during iteration in step: 1\nINFO  geolocation_fast was called with look_direction "
             "1.000000 height 10.000000 rpole 6356762.314200 requator 6378147.000000 fast_time "
             "0.000977 sat_pos (7000000.000000,0.000000,0.000000)=7000000.000000 sat_vel "
             "(0.000000,3000.000000,4000.000000)=5000.000000.\n");
  expect(EQUATORIAL, -6.3e6, 6926524, "algorithm error",  // a very flat body
         head + "convergence problem\nINFO  geolocation_fast was called with look_direction ");
  EXPECT_EQ(ground.point[0] + ground.heading + ground.latitude + ground.incidence, -4);
  expect({{7e6, 0, 0}, {0, NAN, 7e3}}, 0, 1e6, "algorithm error",
         head + "unexpected error!\nALARM earth_vect.x: ");
  EXPECT_EQ(ground.Locate(AT_HEIGHTS[1], RISING, 1, 0, POLE, 1e6, 0),
            "VECTOR operator /= : division by 0.0");
}

double HeightOfHills(double latitude, double longitude) {
  return 500 + 400 * std::sin(700 * latitude) * std::cos(600 * longitude);
}
double Hills(void* context, double latitude, double longitude, double n) {
  ++*static_cast<int*>(context);
  EXPECT_LE(std::fabs(longitude), PI);
  EXPECT_NEAR(n * n, 1 - (1 - FIGURE[3] / FIGURE[2]) * std::pow(std::sin(latitude), 2), 1e-15);
  return HeightOfHills(latitude, longitude);
}

TEST_F(LoggedTest, SurfaceSearchesFollowTheTerrainByDopplerAndBySquint) {
  for (int i = 0; i < 8 * 2 * 2; ++i) {
    const STATE& s = PASSES[i / 4];
    const SEARCH search = (i & 1) != 0 ? NEW : TEST_SOLVER;
    const double side = (i & 2) != 0 ? 1 : -1, found = search == NEW ? 1 : side;
    const double range = SlantRange(s, 500, POLE, 0.59);
    FOUND one, again, rough;
    one.line_speed = rough.line_speed = 200;
    // No height is as exact as 1e-3 roundings: the steps come to rest at one point or between two.
    one.Search(search, Hills, s, true, side, range, search == NEW ? 1e-3 : 0);
    EXPECT_NEAR(one.elevation, HeightOfHills(one.latitude * RADIANS, one.longitude * RADIANS),
                1e-8);
    one.ExpectLaws(s, found, range, 200, EQUATOR, POLE, one.elevation, 6e-8);
    // By the squint of that point the search finds it again.
    again.squint = one.squint;
    again.Search(search, Hills, s, false, found, range);
    // The hills and the pole multiply what is found to 6e-8 m.
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(again.point[k], one.point[k], 1e-6);
    EXPECT_NEAR(again.line_speed, search == NEW ? 0 : 200, 1e-8);
    rough.Search(search, Hills, s, true, side, range, 1e9);  // roundings of 7e6 m
    EXPECT_LT(rough.calls, one.calls);
  }
}

double Level(void* /*context*/, double, double, double) { return 0; }

TEST_F(LoggedTest, AFailedSearchThrowsATextAndGivesNothing) {
  const std::string name = "geolocation_new: No intersection with earth (initial value).";
  const auto expect = [](SEARCH search, const STATE& s, double range, double los,
                         const std::string& text) {
    FOUND f;
    f.line_speed = los;
    EXPECT_EQ(ThrownText([&] { f.Search(search, Level, s, true, 1, range); }), text);
    EXPECT_EQ(f.point[0] + f.latitude + f.longitude + f.elevation, -4);
  };
  expect(NEW, RISING, 5e5, 0, "geolocation_new: Vertical velocity not allowed (v_tan=0)!");
  expect(NEW, EQUATORIAL, 5e5, 0, name);
  expect(NEW, EQUATORIAL, 9e5, 5001, name);  // faster than the satellite
  expect(TEST_SOLVER, RISING, 5e5, 0, "geolocation_test: Vertical velocity not allowed (v_tan=0)!");
  expect(TEST_SOLVER, EQUATORIAL, 5e5, 0,
         "geolocation_test: No intersection with earth (negative radiant).");
}

double Swinging(void* context, double, double, double) {
  const int call = ++*static_cast<int*>(context);
  return call < 21 && call % 2 == 0 ? 1e3 : 0;
}

TEST_F(LoggedTest, WithoutAnOffsetAcrossTheTrackTheSquintIsHugeAndSigned) {
  for (const double sign : {-1.0, 1.0}) {
    FOUND found;
    found.line_speed = 200 * sign;
    found.Search(TEST_SOLVER, Level, EQUATORIAL, true, 0, 9e5);
    EXPECT_EQ(found.squint, sign * 1e42);
  }
}

TEST_F(LoggedTest, ASearchThatSwingsGoesOnFromTheMiddle) {
  FOUND found;
  found.Search(TEST_SOLVER, Swinging, EQUATORIAL, true, 1, 9e5);
  EXPECT_GT(found.calls, 20);
  EXPECT_TRUE(TakeLog().starts_with("geolocation_test: Alternating points detected"));
}

}  // namespace
}  // namespace varnoth::test
