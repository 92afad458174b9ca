#include "foundation/errors.hpp"
#include "geometry/geolocation.hpp"
#include "geometry/geolocation_fast.hpp"
#include "geometry/geolocation_search.hpp"
#include "geometry/satellite_passes.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

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
const SOLVER FAST{"geolocation_fast", geolocation_fast, true};
const SOLVER ON_VECTORS{"geolocation", OnVectors, true};
const SOLVER NEW{"geolocation_new", geolocation_new, false, true};
const SOLVER TEST_SOLVER{"geolocation_test", geolocation_test, false};

struct GROUND : TARGET {
  double heading = -1, incidence = -1;
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
};

double Degrees(double y, double x) { return std::atan2(y, x) / RADIANS; }

class SolverAtAHeight : public testing::TestWithParam<SOLVER> {};

TEST_P(SolverAtAHeight, PointAndAnglesObeyTheirDefinitions) {
  const SOLVER& solver = GetParam();
  const double incidences[] = {0.17, 0.7, 1.2}, heights[] = {-430, 0, 100, 8848};
  for (int i = 0; i < 8 * 2 * 2 * 2 * 3 * 4; ++i) {
    const STATE& state = PASSES[i / 96];
    const double side = (i & 1) != 0 ? 1 : -1, los = (i & 2) != 0 ? 300 : 0;
    const double rpole = (i & 4) != 0 ? POLE : EQUATOR, height = heights[i / 24 % 4];
    const double range = SlantRange(state, height, rpole, incidences[i / 8 % 3]);
    const double raised = solver.raises ? height : 0;
    GROUND g;
    EXPECT_EQ(g.Locate(solver, state, side, height, rpole, range, los), "nothing thrown");
    EXPECT_EQ(g.work.context, nullptr);
    // The rounding of angles, 4e-9 m, and in the searches ten times that near a pole.
    g.ExpectLaws(state, solver.always_right ? 1 : side, range, los, EQUATOR + raised,
                 rpole + raised, height - raised, solver.raises ? 2e-8 : 6e-8);
    EXPECT_TRUE(g.longitude >= 0 && g.longitude <= 360) << g.longitude;
    double across[3];
    CrossProduct(across, g.up, g.look);
    // The rounding of the inverse functions; an arc cosine near 1 keeps half the digits.
    EXPECT_NEAR(g.incidence, Degrees(Length(across), -DotProduct(g.up, g.look)), 1e-11);
    const auto& [s, v] = state;
    const double east = (s[0] * v[1] - s[1] * v[0]) * Length(s);
    const double north = v[2] * (s[0] * s[0] + s[1] * s[1]) - s[2] * (s[0] * v[0] + s[1] * v[1]);
    EXPECT_NEAR(g.heading, Degrees(east, north) + (east < 0 ? 360 : 0), 1e-5);
  }
}

INSTANTIATE_TEST_SUITE_P(, SolverAtAHeight, testing::Values(FAST, ON_VECTORS, NEW, TEST_SOLVER),
                         [](const auto& test) { return test.param.name; });

TEST_F(LoggedTest, AFailedGeolocationIsToldInOrderAndLeavesTheOutputsAlone) {
  GROUND ground;
  const std::string head = "ALARM : log : geolocation_fast: ";
  const std::string called =
      "INFO  : log : geolocation_fast was called with look_direction 1.000000 height ";
  const std::string at =
      " sat_pos (7000000.000000,0.000000,0.000000)=7000000.000000 sat_vel "
      "(0.000000,3000.000000,4000.000000)=5000.000000.\n";
  const auto expect = [&](const STATE& state, double height, double range, const std::string& what,
                          const std::string& lines) {
    EXPECT_EQ(ground.Locate(FAST, state, 1, height, POLE, range, 0), what);
    // What a search without end has come to, behind the text, is anybody's guess.
    EXPECT_EQ(Replaced(Log(), "-nan", "nan").substr(0, lines.size()), lines);
    TakeLog();
  };
  expect({{0, 3e6, -4e6}, {7e3, 0, 0}}, 0, 1e6, "wrong argument",
         head + "satellite position lies within the earth!\n" + head +
             "length of satellite position is: 5000000.000000\n");
  expect({{7e6, NAN, 0}, {0, 7e3, 0}}, 0, 1e6, "case not handled in if or switch block",
         head + "determination of angle theta failed!\n");
  expect(EQUATORIAL, 10, SPEED_OF_LIGHT / 2048, "data error",
         head + "No intersection of earth ellipsoid and sphere around the satellite\n" + head +
             "during iteration in step: 1\n" + called +
             "10.000000 rpole 6356762.314200 requator 6378147.000000 fast_time 0.000977" + at);
  expect(EQUATORIAL, -6.3e6, 6926524, "algorithm error",  // a very flat body
         head + "convergence problem\n" + called +
             "-6300000.000000 rpole 56752.314200 requator 78137.000000 fast_time 0.046209" + at +
             "INFO  : log : accuracy after 21 steps: ");
  EXPECT_EQ(ground.point[0] + ground.heading + ground.latitude + ground.incidence, -4);
  expect({{7e6, 0, 0}, {0, NAN, 7e3}}, 0, 1e6, "algorithm error",
         head + "unexpected error!\nALARM : log : earth_vect.x: nan\n");
  EXPECT_EQ(ground.Locate(ON_VECTORS, RISING, 1, 0, POLE, 1e6, 0),
            "VECTOR operator /= : division by 0.0");
}

}  // namespace
}  // namespace varnoth::test
