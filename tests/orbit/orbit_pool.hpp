#pragma once

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {

enum TIME_KIND : int { SECONDS, UTC, MET };

/// x, y, z and epoch of a record, as texts.
using RECORD_TEXTS = std::array<std::string, 4>;

/// A pool with samples of CIRCLE every ten seconds from 8343.324203 s, or that time of day, on.
struct ORBIT_POOL {
  TIME_KIND kind = SECONDS;
  std::string interpolation = "everett";
  int count = 9;
  std::string source = "pool_double";

  std::string Epoch(double seconds) const {
    const double day = 8343.324203 + seconds;
    if (kind == SECONDS) return std::to_string(day);
    const double minute = std::floor(day / 60);
    char clock[32];
    std::snprintf(clock, sizeof clock, "/02:%02.0f:%09.6f", minute - 120, day - 60 * minute);
    return (kind == UTC ? "06-APR-2025" : "0012") + std::string(clock);
  }
  /// Value of a column, "xyz" or their derivatives "uvw", at a sample.
  static std::string Number(std::size_t column, int sample) {
    char number[32];
    const TRIPLE state = CIRCLE()(10.0 * sample, static_cast<int>(column / 3));
    std::snprintf(number, sizeof number, "%.17E", state[column % 3]);
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
    for (std::size_t c = 0; c < 7; ++c) {
      const std::string type = c < 6 ? number_type : kind == SECONDS ? "FLT_15" : "STR";
      const int length = c < 6 ? count + 1 : count;  // values behind the last epoch are left out
      text += "xyzuvwt"[c] + (" " + type + "_V 5\t") + std::to_string(length) + "\n{\n";
      for (int k = 0; k < length; ++k) {
        text += (c < 6 ? Number(c, k) : quote + Epoch(10.0 * k) + quote) + "\n";
      }
      text += "}\n";
    }
    return text;
  }
  /// The same samples for a record file.
  std::vector<RECORD_TEXTS> Records() const {
    std::vector<RECORD_TEXTS> all;
    for (int k = 0; k < count; ++k)
      all.push_back({Number(0, k), Number(1, k), Number(2, k), Epoch(10.0 * k)});
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
  void WriteRecords(const std::vector<RECORD_TEXTS>& records) {
    WriteFile(
        directory.Path("format.dat"),
        "states STR_V 5\t4\n{\n\"t : utc\"\n\"x : double\"\n\"y : double\"\n\"z : int\"\n}\n");
    const std::string place = directory.Path("ZEL2/hddc_AQAR041/dt_007.2001/sec");
    std::filesystem::create_directories(place);
    std::string text;
    for (const auto& [x, y, z, epoch] : records)
      text += "t : " + epoch + "\n  x : " + x + "\n  y : " + y + "\n  z : " + z + "\n";
    WriteFile(place + "/states", text);
  }
  /// The core of `orbit`, with these records.
  const ORBIT_BASE& ReadRecords(TIME_KIND kind, const char* interpolation,
                                const std::vector<RECORD_TEXTS>& records) {
    WriteRecords(records);
    Read(ORBIT_POOL{kind, interpolation, 2, "mdb_double"}.Text());
    return *orbit.core;
  }
  SCENE_ORBIT orbit;
};

}  // namespace varnoth::test
