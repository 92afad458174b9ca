#include "driver/configuration.hpp"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "system/floating_point_traps.hpp"
#include "system/signal_safe/status_marks.hpp"

namespace varnoth {

namespace {

STRING Value(CONTROLLER_IFC& controller, const char* key) {
  STRING value;
  controller.get_parameter(key, value);
  if (value.Length() > PATH_LIMIT) {
    GlobalLog.printf_line(ALARM, "value of parameter %s is longer than %zu characters", key,
                          PATH_LIMIT);
    throw ERROR_ARGUMENT();
  }
  return value;
}

}  // namespace

void read_configuration(CONTROLLER_IFC& controller, CONFIGURATION& configuration) {
  configuration.flat_earth_poly_degree_text = Value(controller, "FlatEarthPolyDegree");
  configuration.master_par = Value(controller, "MasterPar");
  configuration.slave_par = Value(controller, "SlavePar");
  configuration.parameter_pool = Value(controller, "ParameterPool");
  configuration.log_pp = Value(controller, "log_pp");
}

double read_local_height(CONTROLLER_IFC& controller, PARAMETER_POOL& insar_pool) {
  constexpr const char* KEY = "LocalHeight";
  double height = 0.0;
  if (controller.has_parameter(KEY)) {
    const STRING text = Value(controller, KEY);
    const HELD_TRAPS held;
    height = std::strtod(text.c_str(), nullptr);
  } else {
    insar_pool.Read("local_height", height);
  }
  return height;
}

bool read_durability(const CONTROLLER_IFC& controller) {
  constexpr const char* KEY = "DurableUpdate";
  STRING value;
  if (!controller.find_quietly(KEY, value) || value == "FALSE") return false;
  if (value != "TRUE") {
    GlobalLog.printf_line(ALARM, "value of parameter %s is neither TRUE nor FALSE", KEY);
    throw ERROR_ARGUMENT();
  }
  GlobalLog.printf_line(INFO, "updates wait until the disk holds them");
  return true;
}

int degree_from_text(const STRING& text) {
  const long degree = std::strtol(text.c_str(), nullptr, 10);
  return static_cast<int>(std::clamp(degree, long{INT_MIN}, long{INT_MAX}));
}

void log_configuration(const CONFIGURATION& configuration, double local_height) {
  GlobalLog.printf_line(INFO, "master pool: ............ %s", configuration.master_par.c_str());
  GlobalLog.printf_line(INFO, "slave pool: ............. %s", configuration.slave_par.c_str());
  GlobalLog.printf_line(INFO, "insar pool: ............. %s", configuration.parameter_pool.c_str());
  GlobalLog.printf_line(INFO, "log pool: ............... %s", configuration.log_pp.c_str());
  GlobalLog.printf_line(INFO, "flat earth poly degree: . %d", configuration.flat_earth_poly_degree);
  GlobalLog.printf_line(INFO, "fixed local height: ..... %.1f", local_height);
}

}  // namespace varnoth
