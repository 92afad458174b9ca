#include "foundation/errors.hpp"
#include "interpolation/polynom.hpp"
#include "orbit/internal/mdb_orbit_definitions.hpp"
#include "orbit/orbit_pool.hpp"

namespace varnoth::test {
namespace {

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

/// Two records, with x = 1 + t/2, y = -2 - t and z = 3.5 - t/4 through them.
const std::vector<RECORD_TEXTS> TWO_RECORDS = {{"1", "-2", "3.5", "5"}, {"2.0", "-4", "3", "7.0"}};

TEST_F(OrbitTest, ARecordFileIsReadInTwoPassesThatMustAgree) {
  struct LOSING_ORBIT : MDB_ORBIT<double, double, POLYNOM<double>, POINT<double>> {
    void Rewind() override {
      std::filesystem::resize_file((GetDirectory() + "/states").c_str(), 30);
      MDB::Rewind();
    }
  } orbit;
  WriteRecords(TWO_RECORDS);
  orbit.SetKeys("t", "x y z", nullptr);
  TakeLog();
  EXPECT_THROW(orbit.read(directory.Path("").c_str(), 2, 41, 1, 7, 2001, 2, "states"), ERROR_DATA);
  EXPECT_TRUE(TakeLog().ends_with("ORBIT: mdb file was changed between open() and read()\n"));
}

TEST_F(OrbitTest, RecordsWithoutTheirEpochOrCoordinatesAreRefused) {
  SCENE_ORBIT orbit;
  const auto read = [&](TIME_KIND kind, const RECORD_TEXTS& record) {
    WriteRecords({record});
    Read(orbit, ORBIT_POOL{kind, "polynom", 1, "mdb_double"}.Text());
  };
  const std::string met = "0012/02:19:03.0";
  EXPECT_EQ(ThrownText([&] {
              read(SECONDS, {"1", "2", "3", met});
            }),
            "can not cast from MET to double");
  EXPECT_EQ(ThrownText([&] {
              read(MET, {"1", "2", "06-APR-2025/02:19:03.0", met});
            }),
            "can not cast from UTC to double");
  EXPECT_THROW(read(UTC, {"1", "2", "3", "5.0"}), ERROR_ARGUMENT);
}

TEST_F(OrbitTest, GivesItsSamples) {
  WriteRecords(TWO_RECORDS);
  SCENE_ORBIT orbit;
  Read(orbit, ORBIT_POOL{SECONDS, "polynom", 2, "mdb_double"}.Text());
  const ORBIT_BASE& core = *orbit.core;
  double time = 0, seconds = 0;
  core.GetSampleTime(1, time);
  core.GetRelativeSampleTime(1, seconds);
  EXPECT_EQ(time, 7);
  EXPECT_EQ(seconds, 2);
  const auto expect = [](auto get, const TRIPLE& wanted) {
    TRIPLE array;
    VECTOR<double> vector(1, 3);
    get(array.data());
    get(vector);
    EXPECT_EQ(array, wanted);
    EXPECT_TRUE(std::equal(wanted.begin(), wanted.end(), vector.GetElementBase(0)));
  };
  expect([&](auto&& out) { core.GetSample(1, out); }, {2, -4, 3});
  expect([&](auto&& out) { core.GetSampleVelocity(1, out); }, {0.5, -1, -0.25});
  expect([&](auto&& out) { core.GetSampleAcceleration(1, out); }, {0, 0, 0});
  EXPECT_THROW(core.GetSampleTime(2, time), ERROR_ARGUMENT);
}

}  // namespace
}  // namespace varnoth::test
