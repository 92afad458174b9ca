#pragma once

#include <string_view>
#include <vector>

namespace varnoth::tools {

/// A part of the map in degrees. Longitudes are continuous and lie within -540 to 540.
struct MAP_BOX {
  double west = 0.0;
  double east = 0.0;
  double south = 0.0;
  double north = 0.0;
};

struct MAP_POINT {
  double longitude = 0.0;
  double latitude = 0.0;
};

using RING = std::vector<MAP_POINT>;

/// The outlines of land within a box, cut at its border: by the even-odd rule what lies inside is
/// land. `text` has a line per ring: the first point and the steps, in hundredths of a degree.
/// Longitudes do not jump at the date line. A ring whose last point lies a turn from its first one
/// goes around the pole.
std::vector<RING> LandWithin(std::string_view text, const MAP_BOX& box);

}  // namespace varnoth::tools
