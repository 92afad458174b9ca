#include "foundation/errors.hpp"
#include "orbit/catalogue.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

enum TIME_KIND : int { SECONDS, UTC, MET };

/// A pool with samples of CIRCLE every ten seconds from 8343.324203 s, or that time of day, on.
struct ORBIT_POOL {
  TIME_KIND kind = SECONDS;
  std::string interpolation = "everett";
  int count = 9;
  bool single_precision = false;

  std::string Epoch(double seconds) const {
    const double day = 8343.324203 + seconds;
    if (kind == SECONDS) return std::to_string(day);
    const double minute = std::floor(day / 60);
    char clock[32];
    std::snprintf(clock, sizeof clock, "/02:%02.0f:%09.6f", minute - 120, day - 60 * minute);
    return (kind == UTC ? "06-APR-2025" : "0012") + std::string(clock);
  }
  std::string Text() const {
    constexpr const char* KINDS[] = {"_double", "_utc", "_met"};
    const std::string quote = kind == SECONDS ? "" : "\"";
    std::string text = std::string("orbit_representation STR \"orbit_pool_") +
                       (single_precision ? "float" : "double") + KINDS[kind] +
                       "\"\norbit_interpolation STR \"" + interpolation +
                       "\"\norbit_param_key STR \"t\"\norbit_value_key STR \"(x, y)/z\"\n" +
                       "orbit_reference_time STR \"" + Epoch(-1.25) + "\"\n";
    for (std::size_t c = 0; c < 4; ++c) {
      const bool is_text = c == 3 && kind != SECONDS;
      const std::string type = is_text ? "STR" : c < 3 && single_precision ? "FLT_6" : "FLT_15";
      text += "xyzt"[c] + (" " + type + "_V 5\t") + std::to_string(count) + "\n{\n";
      for (int k = 0; k < count; ++k) {
        char number[32];
        if (c < 3) std::snprintf(number, sizeof number, "%.17E", CIRCLE()(10.0 * k)[c]);
        text += (c < 3 ? number : quote + Epoch(10.0 * k) + quote) + "\n";
      }
      text += "}\n";
    }
    return text;
  }
};

/// A test with orbits out of pool files.
class OrbitTest : public LoggedTest {
 protected:
  void Read(SCENE_ORBIT& orbit, const std::string& text) {
    WriteFile(directory.Path("pool"), text);
    PARAMETER_POOL pool(directory.Path("pool").c_str());
    orbit.read(pool);
  }
};

/// An interpolation with its bounds for position (m), velocity (m/s) and acceleration (m/s²), in
/// double and in single precision.
///
/// A parabola through three samples misses the third derivative, R w³ = 8.8e-3 m/s³: at most its
/// 385/6, 100/6 and 10 fold. Everett's fourth order misses the sixth difference, R (10 w)^6 =
/// 1.1e-5 m, times at most 1/200. A Chebyshev series of eighth order leaves the rounding of the
/// samples, 1e-9 m. Single precision rounds the samples to 0.5 m, and a fit to 1e-6 of them.
struct METHOD {
  int id;
  const char* text;
  int samples;
  double bounds[2][3];
};
constexpr METHOD METHODS[] = {
    {POLYNOM_ID, "polynom", 3, {{0.6, 0.15, 0.09}, {1.2, 0.3, 0.1}}},
    {POLYFIT_ID, "polyfit_2", 3, {{0.6, 0.15, 0.09}, {10, 2, 0.5}}},
    {CHEBYSHEV_ID, "chebyshev_8", 9, {{2e-8, 4e-9, 8e-10}, {10, 2, 0.5}}},
    {EVERETT_ID, "everett_4", 9, {{6e-8, 3e-8, 1e-8}, {0.6, 0.1, 0.02}}},
};

using ROW = std::pair<ORBIT_TYPE, METHOD>;

/// The rows that make an orbit out of a pool.
std::vector<ROW> PoolRows() {
  std::vector<ROW> rows;
  for (const ORBIT_TYPE& type : OrbitTypes()) {
    for (const METHOD& method : METHODS) {
      const ORBIT_FACTORY make = FindOrbitFactory(type.id, method.id);
      if (make != nullptr && make()->IsPoolOrbit()) rows.emplace_back(type, method);
    }
  }
  return rows;
}

class CatalogueTest : public OrbitTest, public testing::WithParamInterface<ROW> {
 protected:
  CatalogueTest() {
    std::string text = ORBIT_POOL{kind, method.text, method.samples, is_single}.Text();
    if (type.id > 6) text.replace(text.find("orbit_pool"), 10, "orbit_mdb");
    Read(orbit, text);
  }
  const ORBIT_TYPE type = GetParam().first;
  const METHOD method = GetParam().second;
  const TIME_KIND kind = static_cast<TIME_KIND>((type.id - 1) % 3);
  const bool is_single = type.id < 4;
  SCENE_ORBIT orbit;
};

TEST_P(CatalogueTest, StatesFollowTheCircle) {
  EXPECT_NEAR(orbit.time_offset, -1.25, 1e-9);  // rounding at 8e3 s
  for (const double part : {0.41, 0.59}) {
    const double t = part * 10.0 * (method.samples - 1);
    double states[3][3];
    orbit.core->GetPosition(t, states[0]);
    orbit.core->GetVelocity(t, states[1]);
    orbit.core->GetAcceleration(t, states[2]);
    for (int i = 0; i < 9; ++i) {
      const double wanted = CIRCLE()(t, i / 3)[static_cast<std::size_t>(i % 3)];
      EXPECT_NEAR(states[i / 3][i % 3], wanted, method.bounds[is_single ? 1 : 0][i / 3]);
    }
  }
}

/// Of a group's thirty entries those for seconds and for the orbit's own kind of time agree, and
/// the others refuse.
template <class GROUP>
void ExpectEntriesAlike(const ORBIT_BASE& orbit, TIME_KIND kind, GROUP group) {
  double wanted[3];
  group(orbit, 6.25, wanted);
  const auto expect_output = [&]<class E>(const auto& time, E) {
    VECTOR<E> vector(0, 3);
    E array[3];
    group(orbit, time, vector);
    group(orbit, time, array);
    for (int c = 0; c < 3; ++c) {
      EXPECT_EQ(vector.GetBase()[c], static_cast<E>(wanted[c]));
      EXPECT_EQ(array[c], static_cast<E>(wanted[c]));
    }
  };
  const auto expect = [&](const auto& time) {
    [&](auto... elements) { (expect_output(time, elements), ...); }(0.0F, 0.0, 0.0L);
  };
  const auto expect_kind = [&](bool is_own, auto time) {
    if (is_own) {
      orbit.GetReferenceTime(time);
      expect(time += 6.25);
    } else {
      EXPECT_EQ(ThrownText([&] { orbit.GetReferenceTime(time); }), "not allowed time conversion");
      EXPECT_EQ(ThrownText([&] { group(orbit, time, wanted); }), "time operation not permitted");
    }
  };
  expect(6.25F);
  expect(6.25);
  expect(6.25L);
  expect_kind(kind == UTC, UNIVERSAL_TIME());
  expect_kind(kind == MET, MISSION_ELAPSED_TIME());
}

TEST_P(CatalogueTest, AllKindsOfTimeAndOutputAgree) {
  const auto expect_alike = [&](auto group) { ExpectEntriesAlike(*orbit.core, kind, group); };
  expect_alike([](auto& o, const auto& t, auto& out) { o.GetPosition(t, out); });
  expect_alike([](auto& o, const auto& t, auto& out) { o.GetVelocity(t, out); });
  expect_alike([](auto& o, const auto& t, auto& out) { o.GetAcceleration(t, out); });
}

INSTANTIATE_TEST_SUITE_P(Rows, CatalogueTest, testing::ValuesIn(PoolRows()), [](const auto& row) {
  return std::string(row.param.first.text) + "_" + row.param.second.text;
});

// Chebyshev orbits of the three record-file types are pool orbits, too.
TEST(Catalogue, HasSixPoolTypesAndChebyshevAllNine) { EXPECT_EQ(PoolRows().size(), 4 * 6 + 3U); }

TEST_F(OrbitTest, AnInterpolationTextHasNameOrderAndSupportPoints) {
  const std::string order_line = "ORBIT: detected poly fit order: ";
  const std::string points_line = "ORBIT: detected support point count: ";
  for (const auto& [text, id, order, points, log] :
       std::initializer_list<std::tuple<const char*, int, int, int, std::string>>{
           {"everett", 9, 4, 5, ""},
           {"polynom_x", 0, 0, 5, order_line + "0\n"},
           {"__polyfit(-8x)", 1, 8, 5, order_line + "8\n"},
           {"chebyshev:6-12;9", 5, 6, 12, order_line + "6\n" + points_line + "12\n"}}) {
    SCENE_ORBIT orbit;
    EXPECT_EQ(orbit.ParseInterpolation(text), id);
    EXPECT_EQ(orbit.poly_fit_order, order);
    EXPECT_EQ(orbit.support_point_count, points);
    EXPECT_EQ(TakeLog(), log);
  }
  EXPECT_THROW(SCENE_ORBIT().ParseInterpolation("_-"), ERROR_ARGUMENT);
  EXPECT_EQ(TakeLog(), "ORBIT: can not determine interpolation type from: _-\n");
}

TEST_F(OrbitTest, TheOffsetIsTheReferenceTimeFromTheFirstSample) {
  const std::string detected = " reference time detected: ";
  using CASE = std::tuple<TIME_KIND, const char*, double, std::string>;
  for (const auto& [kind, text, offset, log] :
       {CASE{SECONDS, "-1e3 s", -9343.324203, "GENERAL_ORBIT: float" + detected + "-1e3 s\n"},
        CASE{UTC, "2025-04-05T02:19:03.324203", -86400.0,
             "GENERAL_ORBIT: UTC" + detected + "05-APR-2025/02:19:03.324203\n"},
        CASE{MET, "13/2:19:3.3", 86399.975797,
             "GENERAL_ORBIT: MET" + detected + "+0013/02:19:03.300000\n"},
        CASE{MET, "12/2:19", -3.324203,
             "MET_SCANNER: TIME: scanner: unexpected end of string\nGENERAL_ORBIT: MET" + detected +
                 "+0012/02:19:00.000000\n"}}) {
    SCENE_ORBIT orbit;
    Read(orbit, ORBIT_POOL{.kind = kind}.Text());
    TakeLog();
    orbit.SetReferenceTime(text);
    EXPECT_NEAR(orbit.time_offset, offset, 1e-9) << text;  // rounding at 1e5 s
    EXPECT_EQ(TakeLog(), std::string("GENERAL_ORBIT::SetReferenceTime(") + text + ")\n" + log);
    Read(orbit, ORBIT_POOL{.kind = kind == UTC ? MET : UTC}.Text());
    const auto set = [&, t = text] { orbit.SetReferenceTime(t); };
    EXPECT_EQ(ThrownText(set), "not allowed time conversion");
  }
}

// Newton's polynomial reads its nodes from the samples, which must be the copy's own.
TEST_F(OrbitTest, ACopyOutlivesItsSource) {
  SCENE_ORBIT copy;
  double wanted[3];
  {
    SCENE_ORBIT source;
    Read(source, ORBIT_POOL{.interpolation = "polynom_2_7"}.Text());
    source.core->GetPosition(33.0, wanted);
    copy = source;
  }
  double position[3];
  copy.core->GetPosition(33.0, position);
  EXPECT_TRUE(std::equal(position, position + 3, wanted));
  EXPECT_NEAR(copy.time_offset + copy.support_point_count, -1.25 + 7, 1e-9);  // rounding at 8e3 s
}

TEST_F(OrbitTest, EpochsThatAreNoTimesAreRefused) {
  SCENE_ORBIT orbit;
  const auto damaged = [](TIME_KIND kind, const std::string& right, const char* wrong) {
    std::string text = ORBIT_POOL{.kind = kind}.Text();
    return text.replace(text.find(right), right.size(), wrong);
  };
  EXPECT_THROW(Read(orbit, damaged(UTC, "02:19:23.324203", "02")), ERROR_DATA);
  EXPECT_EQ(ThrownText([&] { Read(orbit, damaged(MET, ":23.324203", "")); }),
            "TIME: scanner: unexpected end of string");
}

}  // namespace
}  // namespace varnoth::test
