#pragma once

#include <optional>
#include <vector>

#include "tools/report/land.hpp"
#include "tools/report/record.hpp"

namespace varnoth::tools {

/// The four corners on the ground in the order of an outline, from the first line's near sample to
/// its far one. Longitudes are continuous. Nothing where a corner is missing.
std::optional<RING> Footprint(const PAIR_RECORD& record);

/// The part of the map to show: the footprints with their surroundings. Nothing without footprints.
std::optional<MAP_BOX> Surroundings(const std::vector<PAIR_RECORD>& records);

}  // namespace varnoth::tools
