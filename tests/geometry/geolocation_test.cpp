#include <cmath>
#include <sstream>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "geometry/ellipsoid_type.hpp"
#include "geometry/geolocation.hpp"
#include "geometry/geolocation_fast.hpp"
#include "geometry/geolocation_search.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

constexpr double EQUATOR = 6378137.0, POLE = 6356752.3142, RADIANS = PI / 180;
constexpr double FIGURE[] = {EQUATOR, POLE, EQUATOR* EQUATOR, POLE* POLE};

/// What a radar hears of an echo.
struct HEARD {
  double position[3], velocity[3], side = 1, range = 1e6, los_velocity = 0;
};

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
struct SIGHT : HEARD {
  double up[3], target[3], look[3];

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
      position[i] = view.position[i];
      velocity[i] = way * view.velocity[i];
    }
    double right[3];
    CrossProduct(right, velocity, position);
    Subtract(look, target, position);
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

/// A solver at a height and, if it has such a form, on a surface. A solver with both forms takes
/// the parallel surface at a height; the others raise the ellipsoid.
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
  int calls = 0;  ///< of the surface function, which has this number as its context
  GEOLOCATION_WORK work{};

  void Locate(const SOLVER& solver, const HEARD& e, double height, double rpole) {
    solver.solve(work, e.position, e.velocity, point, heading, latitude, longitude, incidence,
                 solver.is_always_right ? -1 : e.side, height, rpole, EQUATOR,
                 e.range * 2 / SPEED_OF_LIGHT, e.los_velocity);
  }
  void Search(const SOLVER& solver, SURFACE_HEIGHT surface, const HEARD& e, bool doppler,
              double tolerance_factor = 0, const double* figure = FIGURE) {
    work.context = &calls;
    work.tolerance_factor = tolerance_factor;
    if (doppler) line_speed = e.los_velocity;
    solver.search(work, figure, surface, e.position, e.velocity, doppler, line_speed, squint, point,
                  latitude, longitude, elevation, doppler && solver.is_always_right ? -1 : e.side,
                  e.range);
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
  g.Locate(solver, sight, view.height, view.rpole);
  EXPECT_EQ(g.work.context, nullptr);
  g.ExpectTarget(sight, view.latitude, view.longitude);
  double across[3];
  CrossProduct(across, sight.up, sight.look);
  const double incidence = std::atan2(Length(across), -DotProduct(sight.up, sight.look));
  EXPECT_NEAR(g.incidence, incidence / RADIANS, 2e-10);  // the point's bound at 600 km
  const double *const s = sight.position, *const v = sight.velocity;
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

/// Returns how many steps a rough tolerance saves.
int ExpectOnTerrain(const SOLVER& solver, const VIEW& view, double way) {
  const double longitude = std::remainder(view.longitude, 360);
  const double height = HeightOfHills(view.latitude * RADIANS, longitude * RADIANS);
  const SIGHT sight(view, way, height, EQUATOR, POLE);
  FOUND one, again, rough;
  // No height is as exact as 1e-3 roundings: the steps come to rest at one point or between two.
  one.Search(solver, Hills, sight, true, solver.is_always_right ? 1e-3 : 0);
  one.ExpectTarget(sight, view.latitude, longitude);
  EXPECT_NEAR(one.elevation, height, 1e-6);
  // By the squint of that point the search finds it again.
  again.squint = one.squint;
  again.Search(solver, Hills, sight, false);
  again.ExpectTarget(sight, view.latitude, longitude);
  EXPECT_NEAR(again.line_speed, solver.is_always_right ? 0 : sight.los_velocity, 1e-6);
  rough.Search(solver, Hills, sight, true, 1e9);  // roundings of 7e6 m
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
    std::istringstream lines(TakeLines());
    EXPECT_NE(lines.str(), "");
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("INFO")) continue;  // of alternating points
      EXPECT_TRUE(line.starts_with(told) && line.ends_with(" iterations.")) << line;
      EXPECT_NE(line[told.size()], '0') << line;
    }
  }
}

TEST_F(LoggedTest, ASurfaceThatNeverRestsHasNoPointAndItsStepsAreTold) {
  const SURFACE_HEIGHT restless = [](void* context, double, double, double) {
    return ++*static_cast<int*>(context) % 3 * 1000.0;
  };
  FOUND f;
  const SIGHT sight(VIEWS[0], 1, 0, EQUATOR, POLE);
  EXPECT_EQ(ThrownText([&] { f.Search(FIXED_POINT, restless, sight, true); }),
            "geolocation_test: Convergence problem!");
  const std::string lines = TakeLines();
  double change = 0.0, previous = 0.0;
  EXPECT_EQ(std::sscanf(lines.c_str(),
                        "ALARM geolocation_test: convergence problem. Residual error after 50 "
                        "iterations: %lf (previous: %lf)",
                        &change, &previous),
            2);
  EXPECT_LT(std::max(change, previous), 2100.0) << "the surface jumps by 2000 m";
  // Behind both ends of the interval the surface is far above the satellite.
  const SURFACE_HEIGHT receding = [](void* context, double, double, double) {
    return ++*static_cast<int*>(context) > 2 ? 1e8 : 0.0;
  };
  FOUND none;
  EXPECT_EQ(ThrownText([&] { none.Search(FALSE_POSITION, receding, sight, true); }), "Error.");
  EXPECT_EQ(TakeLines(), "ALARM geolocation_new: Convergence problem.\n");
}

// On a sphere the distances are those of the surface alone: 0, 1000, and 0 again, from which the
// search goes on at 500.
TEST_F(LoggedTest, ASearchBetweenTwoPointsGoesOnFromTheMiddleAndTells) {
  const SURFACE_HEIGHT alternating = [](void* context, double, double, double) {
    constexpr double HEIGHTS[] = {0, 1000, 0, 500, 500};
    return HEIGHTS[(*static_cast<int*>(context))++];
  };
  constexpr double SPHERE[] = {EQUATOR, EQUATOR, FIGURE[2], FIGURE[2]};
  const SIGHT sight(VIEWS[0], 1, 500, EQUATOR, EQUATOR);
  FOUND f;
  f.Search(FIXED_POINT, alternating, sight, true, 0, SPHERE);
  EXPECT_EQ(TakeLines(),
            "INFO  geolocation_test: Alternating points detected in interation 3 at radius change "
            "1000.000000. Selecting new value in the middle.\n"
            "TRACE geolocation_test: 4 iterations.\n");
}

TEST_F(LoggedTest, AFailureIsToldInOrderAndLeavesTheOutputsAlone) {
  std::string told;
  const auto expect = [&](const SOLVER& solver, const HEARD& e, double height,
                          const std::string& thrown, const std::string& lines = "") {
    FOUND f;
    try {
      EXPECT_EQ(ThrownText([&] { f.Locate(solver, e, height, POLE); }), thrown);
    } catch (const ERROR_EXCEPTION& error) {
      EXPECT_EQ(error.what(), thrown);
    }
    told = TakeLines();
    EXPECT_EQ(told.substr(0, lines.size()), lines);
    EXPECT_EQ(f.latitude + f.longitude + f.incidence, -3) << thrown;
    // A target that is not a number sets point and heading.
    EXPECT_TRUE(std::isnan(e.velocity[1]) || f.point[0] + f.heading == -2) << thrown;
  };
  const std::string head = "ALARM geolocation_fast: ";
  const std::string fast_call =
      "INFO  geolocation_fast was called with look_direction 1.000000 height ";
  expect(FAST, {{0, 3e6, -4e6}, {7e3, 0, 0}}, 0, "wrong argument",
         head + "satellite position lies within the earth!\n" + head +
             "length of satellite position is: 5000000.000000\n");
  expect(SLOW, {{0, 3e6, -4e6}, {7e3, 0, 0}}, 0, "wrong argument");
  EXPECT_TRUE(told.ends_with("position is: 5000000.000000\n")) << told;
  expect(FAST, {{0, NAN, 7e6}, {0, 7e3, 0}}, 0, "case not handled in if or switch block");
  expect(FAST, {{7e6, NAN, 0}, {0, 7e3, 0}}, 0, "case not handled in if or switch block",
         head + "determination of angle theta failed!\n");
  expect(FAST, {{7e6, 0, 0}, {0, NAN, 7e3}}, 0, "algorithm error",
         head + "unexpected error!\nALARM earth_vect.x: ");
  expect(SLOW, {{7e6, 0, 0}, {0, NAN, 7e3}}, 0, "algorithm error",
         "ALARM geolocation: unexpected error!\nALARM earth_vect[0]: ");
  HEARD level{{7e6, 0, 0}, {0, 3e3, 4e3}, 1, SPEED_OF_LIGHT / 2048};
  const HEARD rising{{7e6, 0, 0}, {5e3, 0, 0}};
  expect(FAST, level, 10, "data error",
         head + "No intersection of earth ellipsoid and sphere around the satellite\n" + head +
             "during iteration in step: 1\n" + fast_call +
             "10.000000 rpole 6356762.314200 requator "
             "6378147.000000 fast_time 0.000977 sat_pos (7000000.000000,0.000000,0.000000)="
             "7000000.000000 sat_vel (0.000000,3000.000000,4000.000000)=5000.000000.\n");
  for (const auto& [solver, where] :
       {std::pair(FALSE_POSITION, "initial value"), std::pair(FIXED_POINT, "negative radiant")}) {
    const std::string name = solver.name, alarm = "ALARM " + name + ": ";
    const bool is_new = solver.is_always_right;
    const auto call = [&](const char* step) {
      return (is_new ? "" : alarm + "during iteration in step: " + step + "\n") + "INFO  " + name +
             " was called with look_direction " + (is_new ? "-" : "") +
             "1.000000 height 10.000000 rpole 6356752.314200 requator 6378137.000000 slant_range ";
    };
    expect(solver, level, 10, name + ": No intersection with earth (" + where + ").",
           alarm + "No intersection of earth ellipsoid and sphere around the satellite\n" +
               call("2") +
               "146383.036133 sat_pos (7000000.000000,0.000000,0.000000)=7000000.000000 sat_vel "
               "(0.000000,3000.000000,4000.000000)=5000.000000.\n");
    expect(solver, rising, 10, name + ": Vertical velocity not allowed (v_tan=0)!",
           alarm + "Vertical velocity not allowed (v_tan=0)\n" + call("1") + "1000000.000000 ");
  }
  expect(SLOW, rising, 0, "VECTOR operator /= : division by 0.0");
  // A very flat body; where a search without an end has got to is anybody's guess.
  level.range = 6926524;
  expect(FAST, level, -6.3e6, "algorithm error", head + "convergence problem\n" + fast_call);
  double change = 1e9, range_residual = 1e9, doppler_residual = 1e9;
  EXPECT_EQ(std::sscanf(told.c_str() + told.rfind("INFO  accuracy"),
                        "INFO  accuracy after 21 steps: %lf %lf %lf (0.000000)", &change,
                        &range_residual, &doppler_residual),
            3);
  EXPECT_LT(change, EQUATOR - POLE) << "the radius is between those of the body";
  EXPECT_LT(range_residual + doppler_residual, 1e-6);
  level.range = 9e5;
  level.los_velocity = 5001;  // faster than the satellite
  expect(FALSE_POSITION, level, 0, "geolocation_new: No intersection with earth (initial value).");
}

TEST(SolverStatus, EachHasItsWords) {
  constexpr std::pair<SOLVER_STATUS, const char*> WORDS[] = {
      {SOLVER_STATUS::INSIDE_THE_EARTH, "satellite within the Earth"},
      {SOLVER_STATUS::NO_SATELLITE_ANGLE, "satellite's position is no number"},
      {SOLVER_STATUS::RADIAL_VELOCITY, "satellite's velocity is radial"},
      {SOLVER_STATUS::NO_INTERSECTION, "no intersection of range sphere and Earth"},
      {SOLVER_STATUS::NO_CONVERGENCE, "no convergence"},
      {SOLVER_STATUS::NO_TARGET_ANGLE, "target's position is no number"}};
  for (const auto& [status, words] : WORDS) EXPECT_STREQ(StatusText(status), words);
}

// The radii of the table are within 3 mm of those that follow from the published flattenings.
TEST(Ellipsoids, HaveThePublishedFigures) {
  for (const auto& [name, a, inverse_flattening] :
       {std::tuple("Airy", 6377340.189, 299.3249646),
        std::tuple("Bessel", 6377397.155, 299.1528128),
        std::tuple("GRS80", 6378137.0, 298.257222101)}) {
    const EllipsoidType<double> figure(name);
    EXPECT_EQ(figure.semi_major_axis, a) << name;
    EXPECT_NEAR(figure.semi_minor_axis, a - a / inverse_flattening, 3e-3) << name;
  }
}

}  // namespace
}  // namespace varnoth::test
