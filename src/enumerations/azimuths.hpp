#pragma once

#include <array>

#include "enumerations/sar_enumerations.hpp"
#include "pool/time_entries.hpp"
#include "time/duration.hpp"

namespace varnoth::SAR {

/// The times of start, center and stop of an acquisition, and its duration.
///
///     Azimuths azimuths;
///     azimuths.ReadFromPool(pool, {"master"});  // "master_start_time" … "master_duration"
///     const UNIVERSAL_TIME start = azimuths[Azimuth::Row(Azimuth::START)];
class Azimuths {
 public:
  /// The time of a position. Throws ERROR_ENUM_BASE_INVALID_ID for a guard.
  const UNIVERSAL_TIME& operator[](const Azimuth& position) const;

  /// Reads the times and the duration. Each time is an STR under the key parts, the position
  /// ("start", "center", "stop") and "time"; the duration is an FLT_15 in seconds under the key
  /// parts and "duration". With `plural` the words are "times" and "durations". Throws what
  /// ReadTime, PARAMETER_POOL::Read and DURATION::FromSeconds throw; the object then stays as it
  /// was.
  void ReadFromPool(PARAMETER_POOL& pool, KEY_PARTS key_parts, bool plural = false);

  DURATION duration;

 private:
  std::array<UNIVERSAL_TIME, std::size(Azimuth::VALUES)> times;
};

}  // namespace varnoth::SAR
