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

/// A satellite (m, m/s) and a target (degrees, m above the ellipsoid) to one side of its track.
struct VIEW {
  const char* name;
  double position[3], velocity[3], latitude, longitude, height, rpole = POLE;
};
constexpr VIEW VIEWS[] = {
    {"ascending", {3e6, 5e6, 4e6}, {-4e3, -2.1e3, 5.5e3}, 33.2, 63.3, -430},
    {"over the date line", {-6e6, 2e5, 3.6e6}, {-3e3, -2e3, -5e3}, 31.9, 181.2, 8848},
    {"steep, westwards", {4e6, -4e6, -4e6}, {-4e3, -4e3, 100}, -34.5, 315, 0},
    {"flat, due east", {7e6, 0, 0}, {0, 7.5e3, 0}, -10.8, 0.1, 8000},
    {"due south", {7e6, 0, 0}, {0, 0, -7.5e3}, 0, 357.8, 100},
    {"over y and a sphere", {0, 7e6, 0}, {0, 50, 7.5e3}, 0.1, 83.9, 100, EQUATOR},
    {"westwards over -y", {0, -6.5e6, 2.5e6}, {-7.4e3, 300, 800}, 25, 270.5, 100},
    {"near the pole", {6e5, 3e5, 6.97e6}, {7.5e3, 100, 0}, 82.3, 50.7, 100}};

/// What the radar sees of a view if the satellite moves that way (1) or back (-1).
struct SIGHT {
  double velocity[3], up[3], target[3], look[3], side, range, los_velocity;

  /// The target is `height` above the ellipsoid of the radii a and b: its foot along the normal
  /// lies on the ellipsoid, where the gradient has the normal's direction.
  SIGHT(const VIEW& view, double way, double height, double a, double b) {
    const double phi = view.latitude * RADIANS, lambda = view.longitude * RADIANS;
    up[0] = std::cos(phi) * std::cos(lambda);
    up[1] = std::cos(phi) * std::sin(lambda);
    up[2] = std::sin(phi);
    const double support = std::hypot(a * up[0], a * up[1], b * up[2]), axes[] = {a, a, b};
    for (int i = 0; i < 3; ++i) {
      target[i] = (axes[i] * axes[i] / support + height) * up[i];
      velocity[i] = way * view.velocity[i];
    }
    Subtract(look, target, view.position);
    double right[3];
    CrossProduct(right, velocity, view.position);
    side = std::copysign(1, DotProduct(look, right));
    range = Length(look);
    los_velocity = DotProduct(look, velocity) / range;
  }
};

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

/// What a solver finds.
struct FOUND {
  double point[3] = {-1, -1, -1}, latitude = -1, longitude = -1, heading = -1, incidence = -1;
  double elevation = -1, line_speed = 0, squint = 1;
  int calls = 0;  ///< of the surface function, whose context it is
  GEOLOCATION_WORK work{};

  void Locate(const SOLVER& solver, const double* position, const double* velocity, double side,
              double height, double rpole, double range, double los_velocity = 0) {
    solver.solve(work, position, velocity, point, heading, latitude, longitude, incidence, side,
                 height, rpole, EQUATOR, range * 2 / SPEED_OF_LIGHT, los_velocity);
  }
  void Search(const SOLVER& solver, SURFACE_HEIGHT surface, const double* position,
              const double* velocity, bool doppler, double side, double range,
              double tolerance_factor = 0) {
    work.context = &calls;
    work.tolerance_factor = tolerance_factor;
    solver.search(work, FIGURE, surface, position, velocity, doppler, line_speed, squint, point,
                  latitude, longitude, elevation, side, range);
  }
  /// To 2e-6 m, since Bowring's latitude of a point at 8848 m is 0.7e-6 m off; near a pole a degree
  /// of longitude is a tenth as long.
  void ExpectTarget(const SIGHT& sight, double wanted_latitude, double wanted_longitude) const {
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(point[i], sight.target[i], 2e-6);
    EXPECT_NEAR(latitude, wanted_latitude, 2e-11);
    EXPECT_NEAR(longitude, wanted_longitude, 2e-10);
  }
};

void ExpectAtHeight(const SOLVER& solver, const VIEW& view, double way) {
  const double raised = solver.search == nullptr ? view.height : 0;
  const SIGHT sight(view, way, view.height - raised, EQUATOR + raised, view.rpole + raised);
  FOUND g;
  g.Locate(solver, view.position, sight.velocity, solver.is_always_right ? -1 : sight.side,
           view.height, view.rpole, sight.range, sight.los_velocity);
  EXPECT_EQ(g.work.context, nullptr);
  g.ExpectTarget(sight, view.latitude, view.longitude);
  double across[3];
  CrossProduct(across, sight.up, sight.look);
  const double incidence = std::atan2(Length(across), -DotProduct(sight.up, sight.look));
  EXPECT_NEAR(g.incidence, incidence / RADIANS, 2e-10);  // the point's bound at 600 km
  const double *const s = view.position, *const v = sight.velocity;
  const double east = (s[0] * v[1] - s[1] * v[0]) * Length(s);
  const double north = v[2] * (s[0] * s[0] + s[1] * s[1]) - s[2] * (s[0] * v[0] + s[1] * v[1]);
  EXPECT_NEAR(g.heading, std::atan2(east, north) / RADIANS + (east < 0 ? 360 : 0), 1e-5);
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

/// Gives how many steps a rough tolerance saves.
int ExpectOnTerrain(const SOLVER& solver, const VIEW& view, double way) {
  const double longitude = std::remainder(view.longitude, 360);
  const double height = HeightOfHills(view.latitude * RADIANS, longitude * RADIANS);
  const SIGHT sight(view, way, height, EQUATOR, POLE);
  const auto search = [&](FOUND& found, bool doppler, double tolerance_factor) {
    found.Search(solver, Hills, view.position, sight.velocity, doppler,
                 doppler && solver.is_always_right ? -1 : sight.side, sight.range,
                 tolerance_factor);
  };
  FOUND one, again, rough;
  one.line_speed = rough.line_speed = sight.los_velocity;
  // No height is as exact as 1e-3 roundings: the steps come to rest at one point or between two.
  search(one, true, solver.is_always_right ? 1e-3 : 0);
  one.ExpectTarget(sight, view.latitude, longitude);
  EXPECT_NEAR(one.elevation, height, 1e-6);
  // By the squint of that point the search finds it again.
  again.squint = one.squint;
  search(again, false, 0);
  again.ExpectTarget(sight, view.latitude, longitude);
  EXPECT_NEAR(again.line_speed, solver.is_always_right ? 0 : sight.los_velocity, 1e-6);
  search(rough, true, 1e9);  // roundings of 7e6 m
  return one.calls - rough.calls;
}

TEST_F(LoggedTest, SolversFindWhatIsSeenAtAHeightAndOnTerrainAndTellTheirStepsAtTrace) {
  for (const SOLVER& solver : {FAST, SLOW, FALSE_POSITION, FIXED_POINT}) {
    int saved = 0;
    for (const VIEW& view : VIEWS) {
      for (const double way : {1.0, -1.0}) {
        SCOPED_TRACE(testing::Message() << solver.name << " " << view.name << " " << way);
        const bool is_right = SIGHT(view, way, 0, EQUATOR, POLE).side > 0;
        if (solver.is_always_right && !is_right) continue;
        ExpectAtHeight(solver, view, way);
        if (solver.search != nullptr) saved += ExpectOnTerrain(solver, view, way);
      }
    }
    EXPECT_TRUE(saved > 0 || solver.search == nullptr);
    const std::string told = std::string("TRACE ") + solver.name + ": ";
    EXPECT_NE(TakeLines().find(told), std::string::npos) << told;
  }
}

TEST_F(LoggedTest, AFailedGeolocationIsToldInOrderAndLeavesTheOutputsAlone) {
  FOUND ground;
  const std::string head = "ALARM geolocation_fast: ";
  using TRIPLE = std::initializer_list<double>;
  const auto expect = [&]<class ERROR>(ERROR, TRIPLE position, TRIPLE velocity, double height,
                                       double range, const std::string& lines) {
    EXPECT_THROW(ground.Locate(FAST, position.begin(), velocity.begin(), 1, height, POLE, range),
                 ERROR);
    // What a search without end has come to, behind the text, is anybody's guess.
    EXPECT_EQ(TakeLines().substr(0, lines.size()), lines);
  };
  expect(ERROR_ARGUMENT(), {0, 3e6, -4e6}, {7e3, 0, 0}, 0, 1e6,
         head + "satellite position lies within the earth!\n" + head +
             "length of satellite position is: 5000000.000000\n");
  expect(ERROR_UNHANDLED_CASE(), {7e6, NAN, 0}, {0, 7e3, 0}, 0, 1e6,
         head + "determination of angle theta failed!\n");
  expect(ERROR_DATA(), {7e6, 0, 0}, {0, 3e3, 4e3}, 10, SPEED_OF_LIGHT / 2048,
         head + "No intersection of earth ellipsoid and sphere around the satellite\n" + head +
             "during iteration in step: 1\nINFO  geolocation_fast was called with look_direction "
             "1.000000 height 10.000000 rpole 6356762.314200 requator 6378147.000000 fast_time "
             "0.000977 sat_pos (7000000.000000,0.000000,0.000000)=7000000.000000 sat_vel "
             "(0.000000,3000.000000,4000.000000)=5000.000000.\n");
  expect(ERROR_ALGORITHM(), {7e6, 0, 0}, {0, 3e3, 4e3}, -6.3e6, 6926524,  // a very flat body
         head + "convergence problem\nINFO  geolocation_fast was called with look_direction ");
  EXPECT_EQ(ground.point[0] + ground.heading + ground.latitude + ground.incidence, -4);
  expect(ERROR_ALGORITHM(), {7e6, 0, 0}, {0, NAN, 7e3}, 0, 1e6,
         head + "unexpected error!\nALARM earth_vect.x: ");
  EXPECT_EQ(ThrownText([&] {
              ground.Locate(SLOW, VIEWS[3].position, VIEWS[3].position, 1, 0, POLE, 1e6);
            }),
            "VECTOR operator /= : division by 0.0");
}

constexpr double ABOVE[] = {7e6, 0, 0}, ASIDE[] = {0, 3e3, 4e3}, UPWARDS[] = {5e3, 0, 0};

double Level(void* /*context*/, double, double, double) { return 0; }

TEST_F(LoggedTest, AFailedSearchThrowsATextAndGivesNothing) {
  const auto expect = [](const SOLVER& solver, const double* velocity, double range, double los,
                         const std::string& text) {
    FOUND f;
    f.line_speed = los;
    EXPECT_EQ(ThrownText([&] { f.Search(solver, Level, ABOVE, velocity, true, 1, range); }),
              solver.name + text);
    EXPECT_EQ(f.point[0] + f.latitude + f.longitude + f.elevation, -4);
  };
  const std::string vertical = ": Vertical velocity not allowed (v_tan=0)!";
  const std::string none = ": No intersection with earth ";
  expect(FALSE_POSITION, UPWARDS, 5e5, 0, vertical);
  expect(FALSE_POSITION, ASIDE, 5e5, 0, none + "(initial value).");
  expect(FALSE_POSITION, ASIDE, 9e5, 5001,
         none + "(initial value).");  // faster than the satellite
  expect(FIXED_POINT, UPWARDS, 5e5, 0, vertical);
  expect(FIXED_POINT, ASIDE, 5e5, 0, none + "(negative radiant).");
}

TEST_F(LoggedTest, WithoutAnOffsetAcrossTheTrackTheSquintIsHugeAndSigned) {
  for (const double sign : {-1.0, 1.0}) {
    FOUND found;
    found.line_speed = 200 * sign;
    found.Search(FIXED_POINT, Level, ABOVE, ASIDE, true, 0, 9e5);
    EXPECT_EQ(found.squint, sign * 1e42);
  }
}

TEST_F(LoggedTest, ASearchThatSwingsGoesOnFromTheMiddle) {
  const SURFACE_HEIGHT swinging = [](void* context, double, double, double) {
    const int call = ++*static_cast<int*>(context);
    return call < 21 && call % 2 == 0 ? 1e3 : 0.0;
  };
  FOUND found;
  found.Search(FIXED_POINT, swinging, ABOVE, ASIDE, true, 1, 9e5);
  EXPECT_GT(found.calls, 20);
  EXPECT_TRUE(TakeLog().starts_with("geolocation_test: Alternating points detected"));
}

}  // namespace
}  // namespace varnoth::test
