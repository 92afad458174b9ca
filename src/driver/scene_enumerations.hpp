#pragma once

#include "foundation/string.hpp"

namespace varnoth {

/// Who transmits in a pair of acquisitions:
///
///     const OBSERVATION_MODE mode = observation_mode_from_text("single_pass");
struct OBSERVATION_MODE {
  enum ID : int {
    NONE = 0,
    SINGLE_PASS = 1,  ///< one transmitter, the master; both satellites receive
    DUAL_PASS = 2,    ///< two passes, each satellite hears its own echo
  };
  int id = NONE;
  const char* text = "";
  double factor = 0.0;
};

/// The values of the texts "single_pass" and "dual_pass"; "left" (-1) and "right" (+1);
/// "fixed_height" (1) and "dem_height" (2). The comparison is exact. Throw ERROR_ARGUMENT, after a
/// line at ALARM, for any other text.
OBSERVATION_MODE observation_mode_from_text(const char* text);
int look_direction_from_text(const char* text);
int geolocation_mode_from_text(const char* text);

/// Text of a look direction; throws ERROR_ARGUMENT, after a line at ALARM, for a value that is
/// neither -1.0 nor 1.0.
const char* look_direction_text(double value);
/// Logs the line "prefix text" at a level; throws as `look_direction_text` does.
void log_look_direction(int level, const char* prefix, double value);

}  // namespace varnoth
