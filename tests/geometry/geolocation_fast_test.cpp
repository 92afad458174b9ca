#include "geometry/geolocation_fast.hpp"

#include <array>
#include <cmath>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "foundation/vector.hpp"
#include "geometry/satellite_passes.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

struct GROUND {
  double point[3] = {-1, -1, -1};
  double heading = -1, latitude = -1, longitude = -1, incidence = -1;

  void Locate(const STATE& s, double side, double height, double rpole, double range, double los) {
    GEOLOCATION_WORK work{};
    geolocation_fast(work, s.position, s.velocity, point, heading, latitude, longitude, incidence,
                     side, height, rpole, EQUATOR, range * 2 / SPEED_OF_LIGHT, los);
  }
};

double Degrees(double y, double x) { return std::atan2(y, x) * 180 / PI; }
double Azimuth(double y, double x) { return Degrees(y, x) + (y < 0 ? 360 : 0); }

/// The point lies on the range sphere, on the raised ellipsoid, on the wanted side and at the
/// wanted velocity along the ray; its angles are those of the ellipsoid's gradient.
void ExpectLaws(const STATE& state, double side, double height, double rpole, double range,
                double los) {
  const double* const s = state.position;
  const double* const v = state.velocity;
  GROUND ground;
  ground.Locate(state, side, height, rpole, range, los);
  const double* const p = ground.point;
  double look[3];
  double across[3];
  Subtract(look, p, s);
  // The stop criterion, 1e-9, and the rounding at 7e6 m.
  EXPECT_NEAR(Length(look), range, 1e-8);
  EXPECT_NEAR(DotProduct(look, v) / range, los, 1e-8);
  const double a2 = std::pow(EQUATOR + height, 2);
  const double up[3] = {p[0] / a2, p[1] / a2, p[2] / std::pow(rpole + height, 2)};
  EXPECT_NEAR((DotProduct(p, up) - 1) * EQUATOR / 2, 0, 1e-8);
  CrossProduct(across, v, s);  // to the right
  EXPECT_GT(DotProduct(look, across) * side, 0);
  // Degrees: the rounding of the inverse functions; an arc cosine near 1 keeps half the digits.
  EXPECT_NEAR(ground.latitude, Degrees(up[2], std::hypot(up[0], up[1])), 1e-11);
  EXPECT_NEAR(ground.longitude, Azimuth(up[1], up[0]), 1e-11);
  CrossProduct(across, up, look);
  EXPECT_NEAR(ground.incidence, Degrees(Length(across), -DotProduct(up, look)), 1e-11);
  const double north = v[2] * (s[0] * s[0] + s[1] * s[1]) - s[2] * (s[0] * v[0] + s[1] * v[1]);
  EXPECT_NEAR(ground.heading, Azimuth((s[0] * v[1] - s[1] * v[0]) * Length(s), north), 1e-5);
}

TEST(GeolocationFast, PointAndAnglesObeyTheirDefinitions) {
  for (const STATE& state : PASSES) {
    for (int i = 0; i < 2 * 2 * 2 * 3 * 4; ++i) {
      const double rpole = (i & 4) != 0 ? POLE : EQUATOR;
      const double incidence = std::array{0.17, 0.7, 1.2}[static_cast<std::size_t>(i / 8 % 3)];
      const double height = std::array{-430, 0, 100, 8848}[static_cast<std::size_t>(i / 24)];
      const double range = SlantRange(state, height, rpole, incidence);
      ExpectLaws(state, (i & 1) != 0 ? 1 : -1, height, rpole, range, (i & 2) != 0 ? 300 : 0);
    }
  }
}

TEST_F(LoggedTest, AFailedGeolocationIsToldInOrderAndLeavesTheOutputsAlone) {
  struct CASE {
    STATE state;
    double height, range;
    std::string what, log;
  };
  const STATE state{{7e6, 0, 0}, {0, 3e3, 4e3}};
  const STATE within{{0, 3e6, -4e6}, {7e3, 0, 0}};
  const STATE no_number{{7e6, NAN, 0}, {0, 7e3, 0}};
  const std::string head = "ALARM : log : geolocation_fast: ";
  const std::string called =
      "INFO  : log : geolocation_fast was called with look_direction 1.000000 height ";
  const std::string at =
      " sat_pos (7000000.000000,0.000000,0.000000)=7000000.000000 sat_vel "
      "(0.000000,3000.000000,4000.000000)=5000.000000.\n";
  for (const CASE& c :
       {CASE{within, 0, 1e6, "wrong argument",
             head + "satellite position lies within the earth!\n" + head +
                 "length of satellite position is: 5000000.000000\n"},
        CASE{no_number, 0, 1e6, "case not handled in if or switch block",
             head + "determination of angle theta failed!\n"},
        CASE{state, 10, SPEED_OF_LIGHT / 2048, "data error",
             head + "No intersection of earth ellipsoid and sphere around the satellite\n" + head +
                 "during iteration in step: 1\n" + called +
                 "10.000000 rpole 6356762.314200 requator 6378147.000000 fast_time 0.000977" + at},
        CASE{state, -6.3e6, 6926524, "algorithm error",  // a very flat body
             head + "convergence problem\n" + called +
                 "-6300000.000000 rpole 56752.314200 requator 78137.000000 fast_time 0.046209" +
                 at + "INFO  : log : accuracy after 21 steps: "}}) {
    GROUND ground;
    std::string what;
    try {
      ground.Locate(c.state, 1, c.height, POLE, c.range, 0);
    } catch (const ERROR_EXCEPTION& error) {
      what = error.what();
    }
    EXPECT_EQ(what, c.what);
    // What a search without end has come to, behind the text, is anybody's guess.
    EXPECT_EQ(Log().substr(0, c.log.size()), c.log);
    EXPECT_EQ(ground.point[0] + ground.heading + ground.latitude + ground.incidence, -4);
    TakeLog();
  }
}

}  // namespace
}  // namespace varnoth::test
