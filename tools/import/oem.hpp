#pragma once

#include <map>
#include <optional>

#include "tools/import/scene.hpp"
#include "tools/import/source.hpp"

namespace varnoth::tools {

/// A segment of an Orbit Ephemeris Message (CCSDS 502.0-B), in UTC, m and m/s.
struct OEM_SEGMENT {
  std::size_t line = 0;  ///< of its META_START
  std::map<std::string, std::string> meta;
  STATE_VECTORS orbit;
  MOMENT first;  ///< of the interval in which vectors may be interpolated
  MOMENT last;
  std::string interpolation;  ///< as a pool names it; empty where the segment doesn't say
};

struct OEM {
  std::vector<OEM_SEGMENT> segments;
  std::vector<std::string> warnings;
};

/// Reads the text form (KVN). Throws IMPORT_FAILURE for what is not of the form, and for a centre
/// other than the Earth, a frame that does not turn with it, and a time system without a known
/// difference to UTC; each is named.
OEM ReadOem(const SOURCE_FILE& source);

}  // namespace varnoth::tools
