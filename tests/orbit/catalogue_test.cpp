#include "orbit/internal/catalogue.hpp"
#include "orbit/orbit_pool.hpp"

namespace varnoth::test {
namespace {

/// An interpolation with its bounds for position (m), velocity (m/s) and acceleration (m/s²), in
/// double and in single precision.
///
/// The derivative of order n of a coordinate is at most R wⁿ, 8.8e-3, 9.4e-6 and 1.0e-8 for 3, 4
/// and 5. An interpolation that misses it errs by it times g(t) / n! and the derivatives of g:
/// the product of the distances from n samples, the square of that from two samples (Hermite, and
/// a spline far from its ends), or the polynomial that is orthogonal on five samples (a fit).
/// Everett's fourth order misses the sixth difference, R (10 w)^6 = 1.1e-5 m, times at most 1/200.
/// The highest degrees leave the rounding of the samples, 1e-9 m. Single precision rounds them to
/// 0.5 m, which slopes divide by the step of 10 s, and fits them to some 1e-6.
struct METHOD {
  int id;
  const char* text;
  int samples;
  double bounds[2][3];
};
constexpr METHOD METHODS[] = {
    {POLYNOM_ID, "polynom", 3, {{0.6, 0.15, 0.09}, {1.2, 0.3, 0.1}}},
    {POLYFIT_ID, "polyfit_2", 3, {{0.6, 0.15, 0.09}, {10, 2, 0.5}}},
    {SPLINE_ID, "spline", 41, {{2.5e-4, 7.6e-5, 7.9e-5}, {1, 0.1, 0.02}}},
    {LOCALPOLYNOM_ID, "localpolynom_0_4", 9, {{2.3e-3, 7.9e-4, 2e-4}, {1, 0.1, 0.02}}},
    {LOCALPOLYFIT_ID, "localpolyfit_2_5", 6, {{2.3, 0.5, 0.044}, {50, 5, 0.5}}},
    {CHEBYSHEV_ID, "chebyshev_8", 9, {{2e-8, 4e-9, 8e-10}, {10, 2, 0.5}}},
    {LOCALCHEBYSHEV_ID, "localchebyshev_4_5", 9, {{1.2e-5, 3.4e-6, 1.1e-6}, {10, 2, 0.5}}},
    {HERMITE_ID, "hermite", 3, {{1e-8, 2e-9, 8e-10}, {1.2, 0.3, 0.1}}},
    {LOCALHERMITE_ID, "localhermite_0_2", 9, {{2.5e-4, 7.6e-5, 7.9e-5}, {1.2, 0.3, 0.1}}},
    {EVERETT_ID, "everett_4", 9, {{6e-8, 3e-8, 1e-8}, {0.6, 0.1, 0.02}}},
};

class CatalogueTest : public OrbitTest,
                      public testing::WithParamInterface<std::tuple<ORBIT_TYPE, METHOD>> {
 protected:
  CatalogueTest() {
    const ORBIT_POOL pool{kind, method.text, method.samples, SOURCES[(type.id - 1) / 3]};
    if (!is_pool) WriteRecords(pool.Records());
    Read(pool.Text());
  }
  static constexpr const char* SOURCES[] = {"pool_float", "pool_double", "mdb_double"};
  const ORBIT_TYPE type = std::get<0>(GetParam());
  const METHOD method = std::get<1>(GetParam());
  const TIME_KIND kind = static_cast<TIME_KIND>((type.id - 1) % 3);
  // Of the types of record files these four interpolations read pools.
  const bool is_pool = type.id < 7 || (method.id >= CHEBYSHEV_ID && method.id <= LOCALHERMITE_ID);
};

TEST_P(CatalogueTest, StatesFollowTheCircleWhateverSeparatesKeysAndStandsBehindTheEpochs) {
  EXPECT_EQ(orbit.core->IsPoolOrbit(), is_pool);
  EXPECT_EQ(orbit.core->IsMdbOrbit(), !is_pool);
  EXPECT_NEAR(orbit.time_offset, -1.25, 1e-9);  // rounding at 8e3 s
  for (const double part : {0.41, 0.59}) {
    const double t = part * 10.0 * (method.samples - 1);
    double states[3][3];
    orbit.core->GetPosition(t, states[0]);
    orbit.core->GetVelocity(t, states[1]);
    orbit.core->GetAcceleration(t, states[2]);
    for (int i = 0; i < 9; ++i) {
      const double wanted = CIRCLE()(t, i / 3)[static_cast<std::size_t>(i % 3)];
      EXPECT_NEAR(states[i / 3][i % 3], wanted, method.bounds[type.id < 4 ? 1 : 0][i / 3]);
    }
  }
}

// Interpolators that look into the samples must look into the copy's own.
TEST_P(CatalogueTest, ACopyOutlivesItsSource) {
  double wanted[3], position[3];
  orbit.core->GetPosition(7.5, wanted);
  SCENE_ORBIT copy;
  copy = orbit;
  orbit.core.reset();
  copy.core->GetPosition(7.5, position);
  EXPECT_TRUE(std::equal(position, position + 3, wanted));
  EXPECT_EQ(copy.time_offset, orbit.time_offset);
}

// Of a group's thirty entries those for seconds and for the orbit's own kind of time agree, and the
// others refuse.
TEST_P(CatalogueTest, AllKindsOfTimeAndOutputAgree) {
  const ORBIT_BASE& core = *orbit.core;
  const auto expect_alike = [&](auto group) {
    double wanted[3];
    group(6.25, wanted);
    const auto expect_output = [&]<class E>(const auto& time, E) {
      VECTOR<E> vector(0, 3);
      E array[3];
      group(time, vector);
      group(time, array);
      for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(vector.GetBase()[c], static_cast<E>(wanted[c]));
        EXPECT_EQ(array[c], static_cast<E>(wanted[c]));
      }
    };
    const auto expect = [&](const auto& time) {
      expect_output(time, 0.0F), expect_output(time, 0.0), expect_output(time, 0.0L);
    };
    const auto expect_kind = [&](bool is_own, auto time) {
      if (is_own) {
        auto sample_time = time;
        core.GetReferenceTime(time);
        core.GetSampleTime(1, sample_time);
        EXPECT_EQ(sample_time, time + DURATION::FromSeconds(10.0));
        expect(time += 6.25);
      } else {
        EXPECT_EQ(ThrownText([&] { core.GetReferenceTime(time); }), "not allowed time conversion");
        EXPECT_EQ(ThrownText([&] { group(time, wanted); }), "time operation not permitted");
      }
    };
    expect(6.25F), expect(6.25), expect(6.25L);
    expect_kind(kind == UTC, UNIVERSAL_TIME());
    expect_kind(kind == MET, MISSION_ELAPSED_TIME());
  };
  expect_alike([&](const auto& t, auto& out) { core.GetPosition(t, out); });
  expect_alike([&](const auto& t, auto& out) { core.GetVelocity(t, out); });
  expect_alike([&](const auto& t, auto& out) { core.GetAcceleration(t, out); });
}

INSTANTIATE_TEST_SUITE_P(Rows, CatalogueTest,
                         testing::Combine(testing::ValuesIn(OrbitTypes()),
                                          testing::ValuesIn(METHODS)),
                         [](const auto& row) {
                           return std::string(std::get<0>(row.param).text) + "_" +
                                  std::get<1>(row.param).text;
                         });

}  // namespace
}  // namespace varnoth::test
