#include "orbit/internal/catalogue.hpp"
#include "orbit/orbit_pool.hpp"

namespace varnoth::test {
namespace {

/// An interpolation, and the highest degree of a curve that it carries with so many samples.
struct METHOD {
  int id;
  const char* text;
  int samples, degree;
};
constexpr METHOD METHODS[] = {{POLYNOM_ID, "polynom", 2, 1},
                              {POLYNOM_ID, "polynom", 4, 3},
                              {POLYFIT_ID, "polyfit_0", 9, 0},
                              {POLYFIT_ID, "polyfit_3", 2, 1},  // lowered
                              {POLYFIT_ID, "polyfit_2", 9, 2},
                              {SPLINE_ID, "spline", 9, 1},
                              {LOCALPOLYNOM_ID, "localpolynom_0_4", 9, 3},
                              {LOCALPOLYFIT_ID, "localpolyfit_2_5", 6, 2},
                              {CHEBYSHEV_ID, "chebyshev_0", 9, 0},
                              {CHEBYSHEV_ID, "chebyshev_1", 9, 1},
                              {CHEBYSHEV_ID, "chebyshev_7", 8, 7},
                              {LOCALCHEBYSHEV_ID, "localchebyshev_4_5", 9, 4},
                              {HERMITE_ID, "hermite", 3, 5},
                              {LOCALHERMITE_ID, "localhermite_0_2", 9, 3},
                              {EVERETT_ID, "everett_0", 9, 1},
                              {EVERETT_ID, "everett_4", 9, 5},
                              {EVERETT_ID, "everett_8", 12, 9}};

class CatalogueTest : public OrbitTest,
                      public testing::WithParamInterface<std::tuple<ORBIT_TYPE, METHOD>> {
 protected:
  /// The tests use a copy that outlives its source: it must look into samples of its own.
  CatalogueTest() {
    const ORBIT_POOL pool{kind, method.text, method.samples, SOURCES[(type.id - 1) / 3],
                          method.degree};
    if (!is_pool) WriteRecords(pool.Records());
    Read(pool.Text());
    copy = orbit;
    orbit.core.reset();
  }
  static constexpr const char* SOURCES[] = {"pool_float", "pool_double", "mdb_double"};
  const ORBIT_TYPE type = std::get<0>(GetParam());
  const METHOD method = std::get<1>(GetParam());
  const TIME_KIND kind = static_cast<TIME_KIND>((type.id - 1) % 3);
  // Of the types of record files these four interpolations read pools.
  const bool is_pool = type.id < 7 || (method.id >= CHEBYSHEV_ID && method.id <= LOCALHERMITE_ID);
  SCENE_ORBIT copy;
};

// Coordinates up to 60 have up to 1 rounding, of 4e-6 in single precision; slopes and curvatures
// divide it by the step of 10 s.
TEST_P(CatalogueTest, StatesFollowTheCurveWhateverSeparatesKeysAndStandsBehindTheEpochs) {
  const ORBIT_BASE& core = *copy.core;
  EXPECT_TRUE(core.IsPoolOrbit() == is_pool && core.IsMdbOrbit() == !is_pool);
  EXPECT_NEAR(copy.time_offset, -1.25, 1e-9);  // rounding at 8e3 s
  for (const double part : {0.41, 0.59}) {
    const double t = part * 10.0 * (method.samples - 1);
    double states[3][3];
    core.GetPosition(t, states[0]);
    core.GetVelocity(t, states[1]);
    core.GetAcceleration(t, states[2]);
    for (int i = 0; i < 9; ++i) {
      const double wanted = Curve(method.degree, i % 3, t, i / 3);
      EXPECT_NEAR(states[i / 3][i % 3], wanted, type.id < 4 ? 3e-4 : 3e-11) << "state " << i / 3;
    }
  }
}

// Of a group's thirty entries those for seconds and for the orbit's own kind of time agree, and the
// others refuse.
TEST_P(CatalogueTest, AllKindsOfTimeAndOutputAgree) {
  const ORBIT_BASE& core = *copy.core;
  double wanted[3];
  core.GetVelocity(6.25, wanted);
  const auto expect_output = [&]<class E>(const auto& time, E) {
    VECTOR<E> vector(0, 3);
    E array[3];
    core.GetVelocity(time, vector);
    core.GetVelocity(time, array);
    for (int c = 0; c < 3; ++c) {
      EXPECT_EQ(vector.GetBase()[c], static_cast<E>(wanted[c]));
      EXPECT_EQ(array[c], static_cast<E>(wanted[c]));
    }
  };
  const auto expect = [&](const auto& time) {
    expect_output(time, 0.0F), expect_output(time, 0.0), expect_output(time, 0.0L);
  };
  expect(6.25F), expect(6.25), expect(6.25L);
  const auto expect_kind = [&](bool is_own, auto time) {
    if (is_own) {
      auto sample_time = time;
      core.GetReferenceTime(time);
      core.GetSampleTime(1, sample_time);
      EXPECT_EQ(sample_time, time + DURATION::FromSeconds(10.0));
      expect(time += 6.25);
    } else {
      EXPECT_EQ(ThrownText([&] { core.GetReferenceTime(time); }), "not allowed time conversion");
      EXPECT_EQ(ThrownText([&] { core.GetVelocity(time, wanted); }),
                "time operation not permitted");
    }
  };
  expect_kind(kind == UTC, UNIVERSAL_TIME());
  expect_kind(kind == MET, MISSION_ELAPSED_TIME());
}

INSTANTIATE_TEST_SUITE_P(Rows, CatalogueTest,
                         testing::Combine(testing::ValuesIn(OrbitTypes()),
                                          testing::ValuesIn(METHODS)),
                         [](const auto& row) {
                           const METHOD& method = std::get<1>(row.param);
                           return std::string(std::get<0>(row.param).text) + "_" + method.text +
                                  "_" + std::to_string(method.samples);
                         });

}  // namespace
}  // namespace varnoth::test
