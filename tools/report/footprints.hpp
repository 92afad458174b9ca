#pragma once

#include <optional>
#include <vector>

#include "tools/report/land.hpp"
#include "tools/report/record.hpp"

namespace varnoth::tools {

/// The four corners on the ground in the order of an outline, from the first line's near sample to
/// its far one. Longitudes are continuous. Nothing where a corner is missing.
std::optional<RING> Footprint(const PAIR_RECORD& record);

/// The longitude from which maps of all footprints go half a turn either way: the middle of the
/// shortest stretch that has them. 0 without footprints.
double MiddleLongitude(const std::vector<PAIR_RECORD>& records);

/// The part of the map to show: the footprints with their surroundings. Longitudes lie within a
/// turn of the middle. Nothing without footprints.
std::optional<MAP_BOX> Surroundings(const std::vector<PAIR_RECORD>& records, double middle);

}  // namespace varnoth::tools
