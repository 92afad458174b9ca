#pragma once

#include <optional>
#include <string>
#include <vector>

#include "driver/geometry_state.hpp"
#include "tools/check/pool_inputs.hpp"

namespace varnoth::tools {

/// The pair of a run, as the run takes it.
struct LOADED_PAIR {
  STEP_POOLS pools;
  std::string configuration_file;
  varnoth::SCENE scene;
  double look_direction = 0.0;  ///< -1 left, +1 right
};

/// Loads the pair of a run with these arguments in this directory, by the run's own code. What
/// only the results need may be missing. Changes nothing. Tells why there is no pair.
bool LoadPair(const std::vector<std::string>& arguments, LOADED_PAIR& pair);

}  // namespace varnoth::tools
