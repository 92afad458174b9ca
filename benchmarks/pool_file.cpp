#include "pool_file.hpp"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "log/log.hpp"

namespace varnoth::bench {

POOL_FILE::POOL_FILE(const std::string& content) {
  path = std::filesystem::temp_directory_path() / "bench_XXXXXX";
  const int descriptor = mkstemp(path.data());
  if (descriptor < 0) throw std::runtime_error("no scratch file");
  close(descriptor);
  std::ofstream(path) << content;
}

POOL_FILE::~POOL_FILE() { std::filesystem::remove(path); }

std::string OrbitText(int samples, int order) {
  std::string text =
      "orbit_representation STR \"orbit_pool_double_double\"\n"
      "orbit_interpolation STR \"everett_" +
      std::to_string(order) +
      "\"\n"
      "orbit_param_key STR \"t\"\norbit_value_key STR \"x y z\"\n"
      "orbit_reference_time STR \"0\"\n";
  for (int column = 0; column < 4; ++column) {
    text += "txyz"[column] + (" FLT_15_V 0\t" + std::to_string(samples)) + "\n{\n";
    for (int i = 0; i < samples; ++i) {
      const double t = 10.0 * i;
      const double angle = 0.4 + 1.078e-3 * t;
      const double state[] = {t, 7e6 * std::cos(angle), 2e6 * std::sin(angle),
                              6.7e6 * std::sin(angle)};
      char number[80];
      std::snprintf(number, sizeof number,
                    "                                                 %.17E\n", state[column]);
      text += number;
    }
    text += "}\n";
  }
  return text;
}

void ShowNothing() {
  GlobalLog.set_file_level(NO_LEVEL);
  GlobalLog.set_screen_level(NO_LEVEL);
}

}  // namespace varnoth::bench
