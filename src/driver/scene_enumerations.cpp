#include "driver/scene_enumerations.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr OBSERVATION_MODE OBSERVATION_MODES[] = {
    {OBSERVATION_MODE::SINGLE_PASS, "single_pass", 1.0},
    {OBSERVATION_MODE::DUAL_PASS, "dual_pass", 2.0},
};

struct LOOK_DIRECTION {
  double value;
  const char* text;
};
constexpr LOOK_DIRECTION LOOK_DIRECTIONS[] = {{-1.0, "left"}, {1.0, "right"}};

struct GEOLOCATION_MODE {
  int id;
  const char* text;
};
constexpr GEOLOCATION_MODE GEOLOCATION_MODES[] = {{1, "fixed_height"}, {2, "dem_height"}};

/// Row of a text in a table; `what` names the table in the message on a miss.
template <class ROW, std::size_t COUNT>
const ROW& RowOf(const char* text, const ROW (&table)[COUNT], const char* what) {
  const ROW* const row = std::find_if(std::begin(table), std::end(table),
                                      [&](const ROW& r) { return std::strcmp(r.text, text) == 0; });
  if (row == std::end(table)) {
    GlobalLog.printf_line(ALARM, "can not convert >>%s<< to %s", text, what);
    throw ERROR_ARGUMENT();
  }
  return *row;
}

}  // namespace

OBSERVATION_MODE observation_mode_from_text(const char* text) {
  return RowOf(text, OBSERVATION_MODES, "observation mode");
}

int look_direction_from_text(const char* text) {
  return static_cast<int>(RowOf(text, LOOK_DIRECTIONS, "look direction").value);
}

int geolocation_mode_from_text(const char* text) {
  return RowOf(text, GEOLOCATION_MODES, "geolocation mode").id;
}

const char* look_direction_text(double value) {
  for (const LOOK_DIRECTION& row : LOOK_DIRECTIONS) {
    if (row.value == value) return row.text;
  }
  // A value that no int holds, such as a NaN, shows as 0.
  const bool shown = std::islessequal(std::fabs(value), 2147483647.0);
  GlobalLog.printf_line(ALARM, "can not convert >>%d<< to look direction",
                        shown ? static_cast<int>(value) : 0);
  throw ERROR_ARGUMENT();
}

void log_look_direction(int level, const char* prefix, double value) {
  GlobalLog.printf_line(level, "%s %s", prefix, look_direction_text(value));
}

}  // namespace varnoth
