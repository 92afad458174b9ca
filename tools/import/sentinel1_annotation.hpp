#pragma once

#include "tools/import/orbit_work.hpp"
#include "tools/import/xml_file.hpp"

namespace varnoth::tools {

/// A point of the geolocation grid.
struct ANNOTATED_POINT {
  MOMENT time;
  double range_time;  ///< two-way, s; NaN where the file does not tell it
  double height;      ///< m
  VECTOR_3 position;  ///< Earth-fixed, m
};

struct SENTINEL1_ANNOTATION {
  SCENE scene;
  std::vector<ANNOTATED_POINT> grid;
};

/// What an annotation file of a Sentinel-1 single-look complex image says, as it stands there. Of a
/// TOPS image the lines are those of the merged bursts, in one time from the first burst's first
/// line on. Throws IMPORT_FAILURE, which names any other product.
SENTINEL1_ANNOTATION ReadSentinel1Annotation(const XML_FILE& file);

/// The cycle's number of an orbit, 1 to 175; 0 for a satellite whose cycles are not known here.
std::int64_t Sentinel1RelativeOrbit(const std::string& satellite, std::int64_t absolute_orbit);

}  // namespace varnoth::tools
