#pragma once

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "orbit/general_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {

enum TIME_KIND : int { SECONDS, UTC, MET };

/// A record of a file.
inline std::string Record(const std::string& x, const std::string& y, const std::string& z,
                          const std::string& epoch) {
  return "t : " + epoch + "\n  x : " + x + "\n  y : " + y + "\n  z : " + z + "\n";
}

/// A coordinate (0, 1, 2) of a curve whose powers of time up to a degree all differ from 0, or a
/// derivative of it.
inline double Curve(int degree, int coordinate, double t, int derivative = 0) {
  const double rate = (coordinate + 1) / 400.0;
  double size = std::pow(1 + rate * t, degree - derivative);
  for (int k = 0; k < derivative; ++k) size *= rate * (degree - k);
  return size;
}

/// A pool with samples of such a curve every ten seconds from 8343.324203 s, or that time of day,
/// on.
struct ORBIT_POOL {
  TIME_KIND kind = SECONDS;
  std::string interpolation = "everett";
  int count = 9;
  std::string source = "pool_double";
  int degree = 1;

  std::string Epoch(double seconds) const {
    const double day = 8343.324203 + seconds;
    if (kind == SECONDS) return std::to_string(day);
    const double minute = std::floor(day / 60);
    char clock[32];
    std::snprintf(clock, sizeof clock, "/02:%02.0f:%09.6f", minute - 120, day - 60 * minute);
    return (kind == UTC ? "06-APR-2025" : "0012") + std::string(clock);
  }
  /// Value of a column, "xyz" or their derivatives "uvw", at a sample.
  std::string Number(int column, int sample) const {
    char number[32];
    std::snprintf(number, sizeof number, "%.17E",
                  Curve(degree, column % 3, 10.0 * sample, column / 3));
    return number;
  }
  std::string Text() const {
    constexpr const char* KINDS[] = {"_double", "_utc", "_met"};
    const std::string quote = kind == SECONDS ? "" : "\"";
    std::string text = "orbit_representation STR \"orbit_" + source + KINDS[kind] +
                       "\"\norbit_interpolation STR \"" + interpolation +
                       "\"\norbit_param_key STR \"t\"\norbit_value_key STR \"{x:y}(z)\"\n" +
                       "orbit_velocity_key STR \"u v/w,\"\norbit_reference_time STR \"" +
                       Epoch(-1.25) + "\"\n";
    const std::string number_type = source == "pool_float" ? "FLT_6" : "FLT_15";
    for (int c = 0; c < 7; ++c) {
      const std::string type = c < 6 ? number_type : kind == SECONDS ? "FLT_15" : "STR";
      const int length = c < 6 ? count + 1 : count;  // an orbit ignores values without an epoch
      text += "xyzuvwt"[c] + (" " + type + "_V 5\t") + std::to_string(length) + "\n{\n";
      for (int k = 0; k < length; ++k) {
        text += (c < 6 ? Number(c, k) : quote + Epoch(10.0 * k) + quote) + "\n";
      }
      text += "}\n";
    }
    return text;
  }
  /// The same samples as a record file.
  std::string Records() const {
    std::string all;
    for (int k = 0; k < count; ++k)
      all += Record(Number(0, k), Number(1, k), Number(2, k), Epoch(10.0 * k));
    return all;
  }
};

/// A test with orbits out of pool files and record files.
class OrbitTest : public LoggedTest {
 protected:
  void Read(const std::string& text) {
    WriteFile(directory.Path("pool"),
              text + "root_path STR \"" + directory.Path("") +
                  "\"\nmission_id STR \"ZEL2\"\ntape_id_number INT_32 41\n"
                  "tape_source_id STR \"AQAR\"\nmajor_data_take_id INT_32 7\n"
                  "minor_data_take_id INT_32 2001\nchannel_id STR \"sec\"\n"
                  "mdb_orbit_data_file STR \"states\"\n");
    PARAMETER_POOL pool(directory.Path("pool").c_str());
    orbit.read(pool);
  }
  /// Writes the record file that those keys name.
  void WriteRecords(const std::string& records) {
    WriteFile(
        directory.Path("format.dat"),
        "states STR_V 5\t4\n{\n\"t : utc\"\n\"x : double\"\n\"y : double\"\n\"z : int\"\n}\n");
    const std::string place = directory.Path("ZEL2/hddc_AQAR041/dt_007.2001/sec");
    std::filesystem::create_directories(place);
    WriteFile(place + "/states", records);
  }
  /// The core of `orbit`, with these records.
  const ORBIT_BASE& ReadRecords(TIME_KIND kind, const char* interpolation,
                                const std::string& records) {
    WriteRecords(records);
    Read(ORBIT_POOL{kind, interpolation, 2, "mdb_double"}.Text());
    return *orbit.core;
  }
  SCENE_ORBIT orbit;
};

}  // namespace varnoth::test
