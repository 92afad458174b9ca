#pragma once

#include <array>

#include "enumerations/sar_enumerations.hpp"
#include "pool/time_entries.hpp"
#include "time/duration.hpp"

namespace varnoth::SAR {

/// The times of start, center and stop of an acquisition, and how long it took.
class Azimuths {
 public:
  /// The time of a position. Throws ERROR_ENUM_BASE_INVALID_ID for a guard.
  const UNIVERSAL_TIME& operator[](const Azimuth& position) const;

  /// Reads the times, texts under the keys of the parts (up to five), the name of the position and
  /// "time"; and the duration, an FLT_15 in seconds under the parts and "duration". With `plural`
  /// the two words are "times" and "durations". Throws what the entries throw, and the record then
  /// stays as it was.
  void ReadFromPool(PARAMETER_POOL& pool, KEY_PARTS key_parts, bool plural = false);

  DURATION duration;

 private:
  std::array<UNIVERSAL_TIME, std::size(Azimuth::VALUES)> times;
};

}  // namespace varnoth::SAR
