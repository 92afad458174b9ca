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
    SCENE_ORBIT parsed;
    EXPECT_EQ(parsed.ParseInterpolation(text), id);
    EXPECT_EQ(parsed.poly_fit_order, order);
    EXPECT_EQ(parsed.support_point_count, points);
    EXPECT_EQ(TakeLog(), log);
  }
  EXPECT_THROW(SCENE_ORBIT().ParseInterpolation("_-"), ERROR_ARGUMENT);
  EXPECT_EQ(TakeLog(), "ORBIT: can not determine interpolation type from: _-\n");
}

TEST_F(OrbitTest, ASelectionThatFailsLeavesNoCore) {
  orbit.SelectCore("orbit_pool_double_utc", "spline");
  EXPECT_THROW(orbit.SelectCore("orbit_pool_double_utc", "splines"), ERROR_ARGUMENT);
  EXPECT_EQ(orbit.core, nullptr);
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
    Read(ORBIT_POOL{.kind = kind}.Text());
    TakeLog();
    orbit.SetReferenceTime(text);
    EXPECT_NEAR(orbit.time_offset, offset, 1e-9) << text;  // rounding at 1e5 s
    EXPECT_EQ(TakeLog(), std::string("GENERAL_ORBIT::SetReferenceTime(") + text + ")\n" + log);
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
  } losing;
  WriteRecords(TWO_RECORDS);
  losing.SetKeys("t", "x y z", nullptr);
  TakeLog();
  EXPECT_THROW(losing.read(directory.Path("").c_str(), 2, 41, 1, 7, 2001, 2, "states"), ERROR_DATA);
  EXPECT_TRUE(
      TakeLines().ends_with("ALARM ORBIT: mdb file was changed between open() and read()\n"));
}

TEST_F(OrbitTest, RecordsWithoutTheirEpochOrCoordinatesAreRefused) {
  using CASE = std::tuple<TIME_KIND, RECORD_TEXTS, const char*>;
  const std::string met = "0012/02:19:03.0";
  for (const auto& [kind, record, text] :
       {CASE{SECONDS, {"1", "2", "3", met}, "can not cast from MET to double"},
        CASE{MET, {"1", "2", "06-APR-2025/02:19:03.0", met}, "can not cast from UTC to double"}}) {
    EXPECT_EQ(ThrownText([&, k = kind, r = record] { ReadRecords(k, "polynom", {r}); }), text);
  }
  EXPECT_THROW(ReadRecords(UTC, "polynom", {{"1", "2", "3", "5.0"}}), ERROR_ARGUMENT);
}

TEST_F(OrbitTest, GivesItsSamples) {
  const ORBIT_BASE& core = ReadRecords(SECONDS, "polynom", TWO_RECORDS);
  double time = 0, seconds = 0;
  core.GetSampleTime(1, time);
  core.GetRelativeSampleTime(1, seconds);
  EXPECT_EQ(time, 7);
  EXPECT_EQ(seconds, 2);
  const auto expect = [](auto get, const TRIPLE& wanted) {
    TRIPLE array, elements;
    VECTOR<double> vector(1, 3);
    get(array.data());
    get(vector);
    std::copy_n(vector.GetElementBase(0), 3, elements.data());
    EXPECT_EQ(array, wanted);
    EXPECT_EQ(elements, wanted);
  };
  expect([&](auto&& out) { core.GetSample(1, out); }, {2, -4, 3});
  expect([&](auto&& out) { core.GetSampleVelocity(1, out); }, {0.5, -1, -0.25});
  expect([&](auto&& out) { core.GetSampleAcceleration(1, out); }, {0, 0, 0});
  EXPECT_THROW(core.GetSampleTime(2, time), ERROR_ARGUMENT);
}

// A duration of 0 ms and -500 us would be taken for a later time.
TEST_F(OrbitTest, ASampleHalfAMillisecondAheadOfTheReferenceHasItsMissionElapsedTime) {
  const std::string second = "0012/02:19:0";
  MISSION_ELAPSED_TIME time;
  ReadRecords(MET, "polynom", {{"1", "2", "3", second + "4.0"}, {"1", "2", "3", second + "3.9995"}})
      .GetSampleTime(1, time);
  EXPECT_STREQ(time.c_str(), "+0012/02:19:03.999500");
}

TEST_F(OrbitTest, PrintsSamplesPositionsAndTheirDifferences) {
  const ORBIT_BASE& core = ReadRecords(SECONDS, "polyfit_0", TWO_RECORDS);  // at their means
  TakeLog();
  core.Print(PARAMETER, "title");
  std::string log = TakeLines();
  std::erase(log, ' ');
  EXPECT_NE(log.find("PARAM|0.000000|1.000000e+00|-2.000000e+00|3.500000e+00|1.500000e+00|"
                     "-3.000000e+00|3.250000e+00|-5.000000e-01|1.000000e+00|2.500000e-01|\n"),
            log.npos)
      << log;
}

TEST_F(OrbitTest, OpensBothFilesOfACurveBeforeItComplainsOfTheFirst) {
  const std::string path = directory.Path("ZEL2");  // a directory
  const ORBIT_BASE& core = ReadRecords(SECONDS, "polynom", TWO_RECORDS);
  EXPECT_THROW(core.SavePolynomial(path.c_str(), 0, 2, 0.0, 1.0), ERROR_CAN_NOT_CREATE_FILE);
  EXPECT_TRUE(std::filesystem::exists(path + ".pkt"));
  EXPECT_TRUE(
      TakeLines().ends_with("ALARM ORBIT::SavePolynomial() can not create file: " + path + "\n"));
}

TEST_F(OrbitTest, TheDeprecatedReadTellsSoAtDebug) {
  Read(ORBIT_POOL().Text());
  TakeLog();
  orbit.core->ReadFromFile(directory.Path("pool").c_str());
  EXPECT_TRUE(TakeLines().starts_with("DEBUG Deprecated function! Please use read() instead!\n"));
}

}  // namespace
}  // namespace varnoth::test
