#pragma once

#include <optional>
#include <string>

#include "driver/geometry_state.hpp"
#include "tools/check/finding.hpp"
#include "tools/check/step_settings.hpp"

namespace varnoth::tools {

/// A pool of a run, as it is.
struct POOL_INPUT {
  std::string file;
  POOL_DOCUMENT document;  ///< without entries if it can't be read

  /// Line of a key, 0 if there is none.
  std::size_t LineOf(const std::string& key) const;
  /// Value of a key; null if there is none that can be read.
  const JSON& Value(const std::string& key) const;
  /// The same as a number; NaN for all else.
  double Number(const std::string& key) const;
  /// The same as a text; empty for all else.
  std::string Text(const std::string& key) const;
  /// The number of a line of a vector's element, counted from 0.
  std::size_t LineOfElement(const std::string& key, std::size_t index) const;
};

/// The three pools that a run reads, and the name of the one that takes its row.
struct STEP_POOLS {
  POOL_INPUT scene[2];  ///< by ROLE
  POOL_INPUT insar;
  std::string log_file;
};

/// Reads the three pools. Tells which are missing or unreadable; nothing is read then.
std::optional<STEP_POOLS> OpenPools(const STEP_SETTINGS& settings, FINDING_LIST& findings);

/// Tells what stands in the way of the updates at a run's end.
void CheckUpdates(const STEP_SETTINGS& settings, FINDING_LIST& findings);

/// Tells of every key that a run reads: missing, of another type, unreadable, read otherwise than
/// it stands there; and of values that no radar, satellite or scene has.
void CheckInputs(const STEP_POOLS& pools, const STEP_SETTINGS& settings, FINDING_LIST& findings);

}  // namespace varnoth::tools
