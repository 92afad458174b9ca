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
constexpr double FIGURE[] = {EQUATOR, POLE, EQUATOR* EQUATOR, POLE* POLE};

struct STATE {
  const char* name;
  double position[3], velocity[3];
};
constexpr STATE EQUATORIAL{"equatorial", {7e6, 0, 0}, {0, 3e3, 4e3}};
constexpr STATE VERTICAL{"vertical", {7e6, 0, 0}, {5e3, 0, 0}};
constexpr STATE PASSES[] = {{"ascending", {3e6, 5e6, 4e6}, {-4e3, -2.1e3, 5.5e3}},
                            {"over the date line", {-6e6, 2e5, 3.6e6}, {-3e3, -2e3, -5e3}},
                            {"westwards", {4e6, -4e6, -4e6}, {-4e3, -4e3, 100}},
                            {"due east", {7e6, 0, 0}, {0, 7.5e3, 0}},
                            {"due south", {7e6, 0, 0}, {0, 0, -7.5e3}},
                            {"north over y", {0, 7e6, 0}, {0, 50, 7.5e3}},
                            {"west over -y", {0, -6.5e6, 2.5e6}, {-7.4e3, 300, 800}},
                            {"near the pole", {6e5, 3e5, 6.97e6}, {7.5e3, 100, 0}}};

/// Side, velocity along the line of sight (m/s), figure, height, and about the incidence (radians).
struct VIEW {
  const char* name;
  double side, los, rpole, height, incidence = 0;
};
constexpr VIEW VIEWS[] = {{"left, steep, below the ellipsoid", -1, 0, POLE, -430, 0.17},
                          {"right, ahead, on it", 1, 300, POLE, 0, 0.7},
                          {"left, behind, on the highest hill", -1, -300, POLE, 8848, 0.7},
                          {"right, flat, on a high hill", 1, 0, POLE, 8000, 1.2},
                          {"left, flat, over a sphere", -1, 300, EQUATOR, 100, 1.2}};

double SlantRange(const STATE& state, double height, double incidence) {
  const double r = Length(state.position), ground = POLE + height;
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

/// A solver at a height, and on a surface if it has such a form, which takes the parallel surface
/// at a height while the others raise the ellipsoid.
struct SOLVER {
  const char* name;
  decltype(&geolocation_fast) solve;
  void (*search)(GEOLOCATION_WORK&, const double*, SURFACE_HEIGHT, const double*, const double*,
                 bool, double&, double&, double*, double&, double&, double&, double,
                 double) = nullptr;
  bool is_always_right = false;
};
const SOLVER FAST{"geolocation_fast", geolocation_fast}, SLOW{"geolocation", OnVectors};
const SOLVER FIXED_POINT{"geolocation_test", geolocation_test, geolocation_test};
const SOLVER FALSE_POSITION{"geolocation_new", geolocation_new,
                            [](auto... arguments) { geolocation_new(arguments...); }, true};

/// What a solver finds, and the laws for it.
struct FOUND {
  double point[3] = {-1, -1, -1}, latitude = -1, longitude = -1, heading = -1, incidence = -1;
  double elevation = -1, line_speed = 0, squint = 1;
  double look[3], up[3];  ///< ray and unit normal; set by ExpectLaws
  int calls = 0;          ///< of the surface function, whose context it is
  GEOLOCATION_WORK work{};

  void Locate(const SOLVER& solver, const STATE& s, const VIEW& view, double range) {
    solver.solve(work, s.position, s.velocity, point, heading, latitude, longitude, incidence,
                 view.side, view.height, view.rpole, EQUATOR, range * 2 / SPEED_OF_LIGHT, view.los);
  }

  void Search(const SOLVER& solver, SURFACE_HEIGHT surface, const STATE& s, bool doppler,
              double side, double range, double tolerance_factor = 0) {
    work.context = &calls;
    work.tolerance_factor = tolerance_factor;
    solver.search(work, FIGURE, surface, s.position, s.velocity, doppler, line_speed, squint, point,
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
    double right[3];
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

void ExpectDefinitions(const SOLVER& solver, const STATE& state, const VIEW& view) {
  const double range = SlantRange(state, view.height, view.incidence);
  const double raised = solver.search == nullptr ? view.height : 0;
  FOUND g;
  g.Locate(solver, state, view, range);
  EXPECT_EQ(g.work.context, nullptr);
  // The rounding of angles, 4e-9 m, and in the searches ten times that near a pole.
  g.ExpectLaws(state, solver.is_always_right ? 1 : view.side, range, view.los, EQUATOR + raised,
               view.rpole + raised, view.height - raised, solver.search != nullptr ? 6e-8 : 2e-8);
  EXPECT_TRUE(g.longitude >= 0 && g.longitude <= 360) << g.longitude;
  double across[3];
  CrossProduct(across, g.up, g.look);
  // The rounding of the inverse functions; an arc cosine near 1 keeps half the digits.
  EXPECT_NEAR(g.incidence, std::atan2(Length(across), -DotProduct(g.up, g.look)) / RADIANS, 1e-11);
  const auto& [name, s, v] = state;
  const double east = (s[0] * v[1] - s[1] * v[0]) * Length(s);
  const double north = v[2] * (s[0] * s[0] + s[1] * s[1]) - s[2] * (s[0] * v[0] + s[1] * v[1]);
  EXPECT_NEAR(g.heading, std::atan2(east, north) / RADIANS + (east < 0 ? 360 : 0), 1e-5);
}

TEST_F(LoggedTest, SolversAtAHeightObeyTheDefinitionsAndTellTheirStepsAtTrace) {
  for (const SOLVER& solver : {FAST, SLOW, FALSE_POSITION, FIXED_POINT}) {
    for (const STATE& state : PASSES) {
      for (const VIEW& view : VIEWS) {
        SCOPED_TRACE(testing::Message() << solver.name << " " << state.name << " " << view.name);
        ExpectDefinitions(solver, state, view);
      }
    }
    const std::string told = std::string("TRACE ") + solver.name + ": ";
    EXPECT_NE(TakeLines().find(told), std::string::npos) << told;
  }
}

TEST_F(LoggedTest, AFailedGeolocationIsToldInOrderAndLeavesTheOutputsAlone) {
  FOUND ground;
  const std::string head = "ALARM geolocation_fast: ";
  const auto expect = [&]<class ERROR>(ERROR, const STATE& state, double height, double range,
                                       const std::string& lines) {
    const VIEW view{"", 1, 0, POLE, height};
    EXPECT_THROW(ground.Locate(FAST, state, view, range), ERROR) << lines;
    // What a search without end has come to, behind the text, is anybody's guess.
    EXPECT_EQ(TakeLines().substr(0, lines.size()), lines);
  };
  expect(ERROR_ARGUMENT(), {"inside", {0, 3e6, -4e6}, {7e3, 0, 0}}, 0, 1e6,
         head + "satellite position lies within the earth!\n" + head +
             "length of satellite position is: 5000000.000000\n");
  expect(ERROR_UNHANDLED_CASE(), {"nowhere", {7e6, NAN, 0}, {0, 7e3, 0}}, 0, 1e6,
         head + "determination of angle theta failed!\n");
  expect(ERROR_DATA(), EQUATORIAL, 10, SPEED_OF_LIGHT / 2048,
         head + "No intersection of earth ellipsoid and sphere around the satellite\n" + head +
             "during iteration in step: 1\nINFO  geolocation_fast was called with look_direction "
             "1.000000 height 10.000000 rpole 6356762.314200 requator 6378147.000000 fast_time "
             "0.000977 sat_pos (7000000.000000,0.000000,0.000000)=7000000.000000 sat_vel "
             "(0.000000,3000.000000,4000.000000)=5000.000000.\n");
  expect(ERROR_ALGORITHM(), EQUATORIAL, -6.3e6, 6926524,  // a very flat body
         head + "convergence problem\nINFO  geolocation_fast was called with look_direction ");
  EXPECT_EQ(ground.point[0] + ground.heading + ground.latitude + ground.incidence, -4);
  expect(ERROR_ALGORITHM(), {"still", {7e6, 0, 0}, {0, NAN, 7e3}}, 0, 1e6,
         head + "unexpected error!\nALARM earth_vect.x: ");
  EXPECT_EQ(ThrownText([&] { ground.Locate(SLOW, VERTICAL, VIEWS[0], 1e6); }),
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

void ExpectHills(const SOLVER& solver, const STATE& s, double side) {
  SCOPED_TRACE(testing::Message() << solver.name << " " << s.name << ", side " << side);
  const double found = solver.is_always_right ? 1 : side;
  const double range = SlantRange(s, 500, 0.59);
  FOUND one, again, rough;
  one.line_speed = rough.line_speed = 200;
  // No height is as exact as 1e-3 roundings: the steps come to rest at one point or between two.
  one.Search(solver, Hills, s, true, side, range, solver.is_always_right ? 1e-3 : 0);
  EXPECT_NEAR(one.elevation, HeightOfHills(one.latitude * RADIANS, one.longitude * RADIANS), 1e-8);
  one.ExpectLaws(s, found, range, 200, EQUATOR, POLE, one.elevation, 6e-8);
  // By the squint of that point the search finds it again.
  again.squint = one.squint;
  again.Search(solver, Hills, s, false, found, range);
  // The hills and the pole multiply what is found to 6e-8 m.
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(again.point[k], one.point[k], 1e-6);
  EXPECT_NEAR(again.line_speed, solver.is_always_right ? 0 : 200, 1e-8);
  rough.Search(solver, Hills, s, true, side, range, 1e9);  // roundings of 7e6 m
  EXPECT_LT(rough.calls, one.calls);
}

TEST_F(LoggedTest, SurfaceSearchesFollowTheTerrainByDopplerAndBySquint) {
  for (const STATE& state : PASSES) {
    ExpectHills(FALSE_POSITION, state, -1);
    ExpectHills(FIXED_POINT, state, -1);
    ExpectHills(FIXED_POINT, state, 1);
  }
}

double Level(void* /*context*/, double, double, double) { return 0; }

TEST_F(LoggedTest, AFailedSearchThrowsATextAndGivesNothing) {
  const auto expect = [](const SOLVER& solver, const STATE& s, double range, double los,
                         const std::string& text) {
    FOUND f;
    f.line_speed = los;
    EXPECT_EQ(ThrownText([&] { f.Search(solver, Level, s, true, 1, range); }), solver.name + text);
    EXPECT_EQ(f.point[0] + f.latitude + f.longitude + f.elevation, -4);
  };
  const std::string vertical = ": Vertical velocity not allowed (v_tan=0)!";
  const std::string none = ": No intersection with earth ";
  expect(FALSE_POSITION, VERTICAL, 5e5, 0, vertical);
  expect(FALSE_POSITION, EQUATORIAL, 5e5, 0, none + "(initial value).");
  expect(FALSE_POSITION, EQUATORIAL, 9e5, 5001,
         none + "(initial value).");  // faster than the satellite
  expect(FIXED_POINT, VERTICAL, 5e5, 0, vertical);
  expect(FIXED_POINT, EQUATORIAL, 5e5, 0, none + "(negative radiant).");
}

TEST_F(LoggedTest, WithoutAnOffsetAcrossTheTrackTheSquintIsHugeAndSigned) {
  for (const double sign : {-1.0, 1.0}) {
    FOUND found;
    found.line_speed = 200 * sign;
    found.Search(FIXED_POINT, Level, EQUATORIAL, true, 0, 9e5);
    EXPECT_EQ(found.squint, sign * 1e42);
  }
}

TEST_F(LoggedTest, ASearchThatSwingsGoesOnFromTheMiddle) {
  const SURFACE_HEIGHT swinging = [](void* context, double, double, double) {
    const int call = ++*static_cast<int*>(context);
    return call < 21 && call % 2 == 0 ? 1e3 : 0.0;
  };
  FOUND found;
  found.Search(FIXED_POINT, swinging, EQUATORIAL, true, 1, 9e5);
  EXPECT_GT(found.calls, 20);
  EXPECT_TRUE(TakeLog().starts_with("geolocation_test: Alternating points detected"));
}

}  // namespace
}  // namespace varnoth::test
