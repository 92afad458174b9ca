#pragma once

#include <vector>

#include "tools/report/record.hpp"

namespace varnoth::tools {

/// A quantity at the eleven samples of the first and of the last line. Where a value is missing or
/// is none it is NaN; without any the lists are empty.
struct CURVE {
  const char* name;
  int decimals;  ///< that are worth showing
  std::vector<double> values[2];
};

/// The eleven positions in master range samples, not rounded; empty where the scene's size is not
/// known.
std::vector<double> CurveSamples(const PAIR_RECORD& record);

/// metres_per_cycle (m), incidence and look (degrees, master), incidence_difference and
/// look_difference (degrees, slave minus master), range_difference (m, master minus slave), phase
/// (cycles, of the polynomial) and misfit (cycles, polynomial minus phase). In dual pass the misfit
/// is that of the phase by the ranges. In single pass it takes the log's phase, which has steps of
/// 0.01 cycles.
std::vector<CURVE> CurvesOf(const PAIR_RECORD& record);

}  // namespace varnoth::tools
