#include <array>

#include "foundation/errors.hpp"
#include "interpolation/polynom.hpp"
#include "orbit/internal/catalogue.hpp"
#include "orbit/internal/mdb_orbit_definitions.hpp"
#include "orbit/orbit_pool.hpp"

namespace varnoth::test {
namespace {

/// Two records, with x = 1 + t/2, y = -2 - t and z = 3.5 - t/4 through them.
const std::string TWO_RECORDS = Record("1", "-2", "3.5", "5") + Record("2.0", "-4", "3", "7.0");

TEST_F(OrbitTest, AnInterpolationTextHasNameOrderAndSupportPoints) {
  const auto expect = [](const char* text, int id, int order, int points) {
    SCENE_ORBIT parsed;
    EXPECT_EQ(parsed.ParseInterpolation(text), id);
    EXPECT_EQ(parsed.poly_fit_order, order) << text;
    EXPECT_EQ(parsed.support_point_count, points) << text;
  };
  expect("everett", EVERETT_ID, 4, 5);
  expect("polynom_x", POLYNOM_ID, 0, 5);
  expect("__polyfit(-8x)", POLYFIT_ID, 8, 5);
  expect("chebyshev:6-12;9", CHEBYSHEV_ID, 6, 12);
  EXPECT_THROW(SCENE_ORBIT().ParseInterpolation("_-"), ERROR_ARGUMENT);
  EXPECT_TRUE(TakeLines().ends_with(
      "PARAM ORBIT: detected poly fit order: 6\nPARAM ORBIT: detected support point count: 12\n"
      "ALARM ORBIT: can not determine interpolation type from: _-\n"));
}

TEST_F(OrbitTest, ASelectionThatFailsLeavesNoCore) {
  orbit.SelectCore("orbit_pool_double_utc", "spline");
  EXPECT_THROW(orbit.SelectCore("orbit_pool_double_utc", "splines"), ERROR_ARGUMENT);
  EXPECT_EQ(orbit.core, nullptr);
}

TEST_F(OrbitTest, ACopyTellsItsStepsAndNeedsTheSameClass) {
  const auto expect = [&](const std::string& core) {
    SCENE_ORBIT copy;
    TakeLines();
    copy = orbit;
    EXPECT_EQ(
        TakeLines(),
        "DEBUG virtual GENERAL_ORBIT<T>& operator=( const GENERAL_ORBIT<T>& agen_orbit )\n"
        "DEBUG virtual " +
            core +
            "_orbit )\n"
            "DEBUG virtual ORBIT_BASE& ORBIT<T,S,I,P>::operator=( const ORBIT_BASE& aorbit )\n"
            "DEBUG virtual ORBIT_BASE& operator=( const ORBIT_BASE&  aorbit )\n");
  };
  ReadRecords(SECONDS, "polynom", TWO_RECORDS);
  expect("MDB_ORBIT<T,S,I,P>& operator=( const ORBIT_BASE& amdb");
  Read(ORBIT_POOL().Text());
  expect("POOL_ORBIT<T,S,I,P>& operator=( const ORBIT_BASE& apool");
  SCENE_ORBIT other;
  other.SelectCore("orbit_pool_double_utc", "everett");
  EXPECT_THROW(*other.core = *orbit.core, ERROR_ARGUMENT);
  EXPECT_THROW(other.core->SetSamples({}, {}, {}), ERROR_NOT_IMPLEMENTED);
  VECTOR<double> result(0, 3);
  other.SetKeys("t", "x y z", nullptr);
  EXPECT_THROW(other.core->GetPosition(1.0, result), ERROR_ARGUMENT) << "it has no samples";
  other.orbit_type_id = ORBIT_TYPE_COUNT + 1;
  EXPECT_THROW(orbit = other, ERROR_ARGUMENT);
}

TEST_F(OrbitTest, TheOffsetIsTheReferenceTimeFromTheFirstSample) {
  const auto expect = [&](TIME_KIND kind, const char* text, double offset, std::string told) {
    Read(ORBIT_POOL{.kind = kind}.Text());
    orbit.SetReferenceTime(text);
    EXPECT_NEAR(orbit.time_offset, offset, 1e-9) << text;  // rounding at 1e5 s
    told = "DEBUG GENERAL_ORBIT: " + told;
    EXPECT_TRUE(TakeLines().ends_with(told + "\n")) << told;
  };
  expect(SECONDS, "-1e3 s", -9343.324203, "float reference time detected: -1e3 s");
  expect(UTC, "2025-04-05T02:19:03.324203", -86400.0,
         "UTC reference time detected: 05-APR-2025/02:19:03.324203");
  const std::string met = "MET reference time detected: ";
  expect(MET, "13/2:19:3.3", 86399.975797, met + "+0013/02:19:03.300000");
  expect(MET, "12/2:19", -3.324203, met + "+0012/02:19:00.000000");
}

TEST_F(OrbitTest, ARecordFileIsReadInTwoPassesThatMustAgree) {
  struct LOSING_ORBIT : MDB_ORBIT<double, double, POLYNOM<double>, POINT<double>> {
    using MDB_ORBIT::operator=;
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
  const std::string met = "0012/02:19:03.0", utc = "06-APR-2025/02:19:03.0";
  const auto thrown = [&](TIME_KIND kind, const std::string& record) {
    return ThrownText([&] { ReadRecords(kind, "polynom", record); });
  };
  EXPECT_EQ(thrown(SECONDS, Record("1", "2", "3", met)), "can not cast from MET to double");
  EXPECT_EQ(thrown(MET, Record("1", "2", utc, met)), "can not cast from UTC to double");
  EXPECT_THROW(ReadRecords(UTC, "polynom", Record("1", "2", "3", "5.0")), ERROR_ARGUMENT);
}

TEST_F(OrbitTest, GivesItsSamples) {
  const ORBIT_BASE& core = ReadRecords(SECONDS, "polynom", TWO_RECORDS);
  double time = 0, seconds = 0;
  core.GetSampleTime(1, time);
  core.GetRelativeSampleTime(1, seconds);
  EXPECT_TRUE(time == 7 && seconds == 2) << time << " " << seconds;
  using TRIPLE = std::array<double, 3>;
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
  double out[3];
  const auto expect_lack = [&](auto get, const char* told) {
    TakeLines();
    EXPECT_THROW(get(), ERROR_ARGUMENT);
    EXPECT_EQ(TakeLines(), told);
  };
  const char* const of_x = "ALARM ORBIT: there is no sample 2 of coordinate 0\n";
  expect_lack([&] { core.GetSampleTime(2, time); }, of_x);
  expect_lack([&] { core.GetRelativeSampleTime(2, time); }, of_x);
  expect_lack([&] { core.GetSampleVelocity(2, out); }, of_x);
  expect_lack([&] { core.GetSampleAcceleration(2, out); }, of_x);
  expect_lack([&] { core.GetSample(2, out); },
              "ALARM ORBIT: there is no sample 2 of coordinate 2\n");
}

// DURATION::FromSeconds would make 0 ms and +500 us of -0.5 ms: a later time.
TEST_F(OrbitTest, ASampleHalfAMillisecondAheadOfTheReferenceHasItsMissionElapsedTime) {
  const auto records =
      Record("1", "2", "3", "12/02:19:04") + Record("1", "2", "3", "12/02:19:03.9995");
  MISSION_ELAPSED_TIME time;
  ReadRecords(MET, "polynom", records).GetSampleTime(1, time);
  EXPECT_STREQ(time.c_str(), "+0012/02:19:03.999500");
  orbit.core->SetReferenceTime(MISSION_ELAPSED_TIME("13/02:19:04"));
  orbit.core->GetSampleTime(1, time);
  EXPECT_STREQ(time.c_str(), "+0013/02:19:03.999500");
}

TEST_F(OrbitTest, PrintsSamplesPositionsAndTheirDifferences) {
  const ORBIT_BASE& core = ReadRecords(SECONDS, "polyfit_0", TWO_RECORDS);  // at their means
  TakeLog();
  core.Print(PARAMETER, "title");
  std::string log = TakeLines();
  std::erase(log, ' ');
  const std::string title = "PARAMtitle\n";
  const std::string rule =
      log.substr(title.size(), log.find('\n', title.size()) + 1 - title.size());
  EXPECT_TRUE(rule.starts_with("PARAM+--")) << rule;
  EXPECT_TRUE(log.starts_with(
      title + rule + "PARAM|t[s]|x[m]|y[m]|z[m]|ix[m]|iy[m]|iz[m]|dx[m]|dy[m]|dz[m]|\n" + rule +
      "PARAM|0.000000|1.000000e+00|-2.000000e+00|3.500000e+00|1.500000e+00|-3.000000e+00|"
      "3.250000e+00|-5.000000e-01|1.000000e+00|2.500000e-01|\n"))
      << log;
  EXPECT_TRUE(log.ends_with("|\n" + rule)) << log;
}

TEST_F(OrbitTest, SavesACurveAndTheSamplesWithinIt) {
  const ORBIT_BASE& core = ReadRecords(SECONDS, "polynom", TWO_RECORDS);
  const std::string path = directory.Path("curve"),
                    second = "2.000000000000000e+00 -4.000000000000000e+00\n";
  core.SavePolynomial(path.c_str(), 1, 3, 1.0, 3.0);
  EXPECT_EQ(ReadFile(path), "1.000000000000000e+00 -3.000000000000000e+00\n" + second +
                                "3.000000000000000e+00 -5.000000000000000e+00\n");
  EXPECT_EQ(ReadFile(path + ".pkt"), second);
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
  WriteFile(directory.Path("pool"), "");
  EXPECT_THROW(orbit.core->ReadFromFile(directory.Path("pool").c_str()), PARAMETER_KEY_NOT_FOUND);
}

}  // namespace
}  // namespace varnoth::test
