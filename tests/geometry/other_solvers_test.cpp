#include <array>
#include <cmath>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "geometry/geolocation.hpp"
#include "geometry/geolocation_fast.hpp"
#include "geometry/geolocation_search.hpp"
#include "geometry/satellite_passes.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using SOLVER = decltype(&geolocation_fast);

constexpr double FIGURE[] = {EQUATOR, POLE, EQUATOR* EQUATOR, POLE* POLE};
constexpr double RADIANS = PI / 180;
constexpr STATE EQUATORIAL{{7e6, 0, 0}, {0, 3e3, 4e3}};

const auto NEW = [](auto&&... arguments) { geolocation_new(arguments...); };
const auto TEST_SOLVER = [](auto&&... arguments) { geolocation_test(arguments...); };

VECTOR<double> Vector(int first, const double* v, int count = 3) {
  VECTOR<double> result(first, count);
  std::copy_n(v, count, result.GetElementBase(0));
  return result;
}

void WithVectors(GEOLOCATION_WORK& work, const double p[3], const double v[3], double target[3],
                 double& heading, double& latitude, double& longitude, double& incidence,
                 double side, double height, double rpole, double requator, double time,
                 double los) {
  VECTOR<double> found;
  geolocation(work, Vector(1, p), Vector(0, v), found, heading, latitude, longitude, incidence,
              side, height, rpole, requator, time, los);
  std::copy_n(found.GetElementBase(0), 3, target);
}

struct GROUND {
  double point[3], heading, latitude, longitude, incidence;

  GROUND(SOLVER solver, const STATE& s, double side, double height, double rpole, double range,
         double los) {
    GEOLOCATION_WORK work{};
    solver(work, s.position, s.velocity, point, heading, latitude, longitude, incidence, side,
           height, rpole, EQUATOR, range * 2 / SPEED_OF_LIGHT, los);
    EXPECT_EQ(work.context, nullptr);
  }
};

/// The point has the range, the side, the velocity along the ray and the height above the ellipsoid
/// of radii a and b for its geodetic coordinates (degrees): its foot along the normal lies on the
/// ellipsoid, where the gradient has the normal's direction.
void ExpectLaws(const double p[3], const STATE& s, double side, double range, double los, double a,
                double b, double latitude, double longitude, double height) {
  double look[3], right[3];
  Subtract(look, p, s.position);
  EXPECT_NEAR(Length(look), range, 1e-8);  // the rounding of 7e6 m
  EXPECT_NEAR(DotProduct(look, s.velocity) / range, los, 1e-8);
  CrossProduct(right, s.velocity, s.position);
  EXPECT_GT(DotProduct(look, right) * side, 0);
  const double phi = latitude * RADIANS, lambda = longitude * RADIANS;
  const double up[3] = {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda),
                        std::sin(phi)};
  const double axes[3] = {a, a, b};
  const double support = std::hypot(axes[0] * up[0], axes[1] * up[1], axes[2] * up[2]);
  // The rounding of angles, 4e-9 m, ten times that near a pole, and Bowring's 0.2 e⁶ h²/a.
  const double bound = 6e-8 + 9e-15 * height * height;
  for (int i = 0; i < 3; ++i) {
    EXPECT_NEAR(p[i] - height * up[i], axes[i] * axes[i] * up[i] / support, bound);
  }
}

class OtherSolvers : public testing::TestWithParam<SOLVER> {};

TEST_P(OtherSolvers, FindThePointsOfTheFastOne) {
  const SOLVER solver = GetParam();
  for (int i = 0; i < 8 * 2 * 2 * 2 * 3 * 4; ++i) {
    const STATE& state = PASSES[i / 96];
    // By a Doppler velocity the false position finds the points on the right.
    const double side = (i & 1) != 0 ? 1 : -1;
    const double found = solver == SOLVER{geolocation_new} ? 1 : side;
    const double los = (i & 2) != 0 ? 300 : 0;
    const double rpole = (i & 4) != 0 ? POLE : EQUATOR;
    const double incidence = std::array{10, 40, 70}[static_cast<std::size_t>(i / 8 % 3)];
    const double height = std::array{-430, 0, 100, 8848}[static_cast<std::size_t>(i / 24 % 4)];
    const double range = SlantRange(state, height, rpole, incidence * RADIANS);
    const GROUND g(solver, state, side, height, rpole, range, los);
    const GROUND fast(geolocation_fast, state, found, height, rpole, range, los);
    const double raised = solver == &WithVectors ? height : 0;
    ExpectLaws(g.point, state, found, range, los, EQUATOR + raised, rpole + raised, g.latitude,
               g.longitude, height - raised);
    EXPECT_GE(g.longitude, 0);
    // A height to 6e-9 m, near a pole to 6e-8 m, is six times as much on the ground at 10 degrees.
    // A parallel surface lies h f²/8 off the raised ellipsoid, whose normal is 6e-3 h/a off.
    const double h = rpole == EQUATOR ? 0 : std::fabs(height - raised);
    const double bound = 4e-7 + 1.5e-6 * 6 * h;
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(g.point[k], fast.point[k], bound);
    EXPECT_NEAR(g.heading, fast.heading, 1e-9);
    EXPECT_NEAR(g.incidence, fast.incidence, 2 * (bound + 6e-3 * h) / POLE / RADIANS);
  }
}

INSTANTIATE_TEST_SUITE_P(, OtherSolvers,
                         testing::Values(&WithVectors, SOLVER{geolocation_new},
                                         SOLVER{geolocation_test}));

double Hills(double latitude, double longitude) {
  return 500 + 400 * std::sin(700 * latitude) * std::cos(600 * longitude);
}

/// By its Doppler velocity the search finds the point on the `found` side, and by the squint of
/// that point it finds it again.
template <class SEARCH>
void ExpectOnTheHills(SEARCH search, const STATE& s, double side, double found) {
  const auto surface = [](void* context, double latitude, double longitude, double n) {
    EXPECT_STREQ(static_cast<const char*>(context), "hills");
    EXPECT_NEAR(n * n, 1 - (1 - FIGURE[3] / FIGURE[2]) * std::pow(std::sin(latitude), 2), 1e-15);
    return Hills(latitude, longitude);
  };
  const double range = SlantRange(s, 500, POLE, 0.6);
  char name[] = "hills";
  GEOLOCATION_WORK work{};
  work.context = name;
  double los = 200, squint = 0, p[3], again[3], latitude, longitude, height;
  search(work, FIGURE, surface, s.position, s.velocity, true, los, squint, p, latitude, longitude,
         height, side, range);
  EXPECT_NEAR(height, Hills(latitude * RADIANS, longitude * RADIANS), 1e-8);
  ExpectLaws(p, s, found, range, los, EQUATOR, POLE, latitude, longitude, height);
  search(work, FIGURE, surface, s.position, s.velocity, false, los, squint, again, latitude,
         longitude, height, found, range);
  // The hills and the pole multiply what is found to 6e-8 m.
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(again[k], p[k], 1e-6);
  EXPECT_NEAR(los, 200, 1e-8);
}

TEST(SurfaceSearch, FollowsTheTerrainByDopplerAndBySquint) {
  for (const STATE& s : PASSES) {
    for (const double side : {-1, 1}) {
      ExpectOnTheHills(NEW, s, side, 1);
      ExpectOnTheHills(TEST_SOLVER, s, side, side);
    }
  }
}

/// Surfaces whose context is a counter: two heights in turn until it is used up, three heights in
/// turn, and one that is high at the first point and low elsewhere.
double Swinging(void* context, double /*latitude*/, double /*longitude*/, double /*n*/) {
  int& left = *static_cast<int*>(context);
  return left > 0 && --left % 2 == 0 ? 1000 : 0;
}
double Turning(void* context, double /*latitude*/, double /*longitude*/, double /*n*/) {
  return 1000 * (++*static_cast<int*>(context) % 3);
}
double Abyss(void* context, double /*latitude*/, double /*longitude*/, double /*n*/) {
  return ++*static_cast<int*>(context) == 1 ? 1e9 : -1e6;
}

/// What a search throws, and on the following lines what it logs; its outputs stay if it throws.
template <class SEARCH>
std::string Thrown(SEARCH search, SURFACE_HEIGHT surface, const STATE& s, bool doppler,
                   double range, double los = 0, int counter = 0) {
  GEOLOCATION_WORK work{};
  work.context = &counter;
  double squint = 1, p[3] = {-1, -1, -1}, latitude = -1, longitude = -1, height = -1;
  const std::string what = ThrownText([&] {
    search(work, FIGURE, surface, s.position, s.velocity, doppler, los, squint, p, latitude,
           longitude, height, 1, range);
  });
  EXPECT_EQ(what != "nothing thrown", p[0] + latitude + longitude + height == -4);
  return what + "\n";
}

class SurfaceSearchLog : public LoggedTest {
 protected:
  void ExpectStart(const std::string& thrown, const std::string& start) {
    EXPECT_EQ((thrown + TakeLog()).substr(0, start.size()), start);
  }
};

TEST_F(SurfaceSearchLog, AFailureIsToldAndThrowsAText) {
  const std::string one = "geolocation_new: ";
  const std::string two = "geolocation_test: ";
  const std::string vertical = "Vertical velocity not allowed (v_tan=0)";
  const std::string outside =
      "No intersection of earth ellipsoid and sphere around the satellite\n";
  const std::string called =
      " was called with look_direction 1.000000 height 0.000000 rpole 6356752.314200 requator "
      "6378137.000000 slant_range 500000.000000 sat_pos (7000000.000000,";
  const STATE rising{{7e6, 0, 0}, {5e3, 0, 0}};
  for (const bool doppler : {true, false}) {
    ExpectStart(Thrown(NEW, Swinging, rising, doppler, 5e5),
                one + vertical + "!\n" + one + vertical + "\ngeolocation_new" + called);
    ExpectStart(Thrown(TEST_SOLVER, Swinging, rising, doppler, 5e5),
                two + vertical + "!\n" + two + vertical + "\n" + two +
                    "during iteration in step: 1\ngeolocation_test" + called);
    ExpectStart(Thrown(NEW, Swinging, EQUATORIAL, doppler, 5e5),
                one + "No intersection with earth (initial value).\n" + one + outside +
                    "geolocation_new" + called);
    ExpectStart(Thrown(TEST_SOLVER, Swinging, EQUATORIAL, doppler, 5e5),
                two + "No intersection with earth (negative radiant).\n" + two + outside + two +
                    "during iteration in step: 2\ngeolocation_test" + called);
    ExpectStart(Thrown(NEW, Abyss, EQUATORIAL, doppler, 9e5),
                "Error.\n" + one + "Convergence problem.\n");
    ExpectStart(Thrown(TEST_SOLVER, Turning, EQUATORIAL, doppler, 9e5),
                two + "Convergence problem!\n" + two +
                    "convergence problem. Residual error after 50 iterations: ");
  }
  // Faster than the satellite: no direction has that much of its velocity in it.
  ExpectStart(Thrown(NEW, Swinging, EQUATORIAL, true, 9e5, 5001), one + "No intersection with");
}

TEST_F(SurfaceSearchLog, ASearchThatSwingsGoesOnFromTheMiddle) {
  // The surface comes to rest after twenty calls; the count of the steps does not start anew.
  EXPECT_EQ(Thrown(TEST_SOLVER, Swinging, EQUATORIAL, true, 9e5, 0, 20), "nothing thrown\n");
  const std::string log = TakeLog();
  EXPECT_EQ(log.find("geolocation_test: Alternating points detected in interation "), 0U);
  EXPECT_NE(log.find(". Selecting new value in the middle.\ngeolocation_test: "),
            std::string::npos);
  // From the middle the search is not back in its swing with the next step.
  const std::size_t first = log.find("interation ") + 11;
  const int second = std::stoi(log.substr(log.find("interation ", first) + 11));
  EXPECT_GT(second, std::stoi(log.substr(first)) + 1);
  const std::string end = log.substr(log.rfind("geolocation_test: ") + 18);
  EXPECT_EQ(end.substr(2), " iterations.\n");
  EXPECT_GT(std::stoi(end), 20);
}

TEST_F(LoggedTest, TheSolverOnVectorsFailsAsTheFastOneUnderItsOwnName) {
  const auto told = [&](SOLVER solver, const STATE& state, double height, double range) {
    std::string what = "nothing thrown";
    try {
      const GROUND ground(solver, state, 1, height, POLE, range, 0);
    } catch (const ERROR_EXCEPTION& error) {
      what = error.what();
    }
    return what + "\n" + TakeLog();
  };
  const auto renamed = [](std::string text) {
    for (const auto& [from, to] :
         {std::pair{"_fast", ""}, {".x: ", "[0]: "}, {".y: ", "[1]: "}, {"-n", "n"}}) {
      for (std::size_t at; (at = text.find(from)) != std::string::npos;) {
        text.replace(at, std::string(from).size(), to);
      }
    }
    return text;
  };
  for (const STATE& s : {EQUATORIAL, STATE{{0, 3e6, -4e6}, {7e3, 0, 0}},
                         STATE{{7e6, NAN, 0}, {0, 7e3, 0}}, STATE{{7e6, 0, 0}, {0, -NAN, 7e3}}}) {
    for (const double height : {10.0, -6.3e6}) {  // the latter gives a very flat body
      const double range = height < 0 ? 6926524 : 2e5;
      std::string fast = renamed(told(geolocation_fast, s, height, range));
      // What a search without end has come to is anybody's guess.
      fast.resize(std::min(fast.size(), fast.find("accuracy after")));
      EXPECT_EQ(renamed(told(WithVectors, s, height, range)).substr(0, fast.size()), fast);
    }
  }
  const auto with_counts = [](int position, int velocity, const double* v) {
    return ThrownText([&] {
      GEOLOCATION_WORK work{};
      VECTOR<double> target;
      double out[4];
      geolocation(work, Vector(0, EQUATORIAL.position, position), Vector(0, v, velocity), target,
                  out[0], out[1], out[2], out[3], 1, 0, POLE, EQUATOR, 6e-3, 0);
    });
  };
  const double* const v = EQUATORIAL.velocity;
  EXPECT_EQ(with_counts(2, 3, v), "CrossProduct: vector a has not dimension of 3");
  EXPECT_EQ(with_counts(3, 2, v), "CrossProduct: vector b has not dimension of 3");
  EXPECT_EQ(with_counts(3, 3, EQUATORIAL.position), "VECTOR operator /= : division by 0.0");
}

}  // namespace
}  // namespace varnoth::test
