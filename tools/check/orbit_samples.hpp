#pragma once

#include <string>
#include <vector>

#include "orbit/scene_orbit.hpp"

namespace varnoth::tools {

/// The samples of a loaded orbit, whatever its types.
struct ORBIT_SAMPLES {
  std::vector<double> times;           ///< s on the scene's axis
  std::vector<COORDINATES> positions;  ///< m
  bool is_single = false;              ///< the orbit calculates in single precision

  double Gap() const { return times.size() > 1 ? times[1] - times[0] : 0.0; }
};

ORBIT_SAMPLES SamplesOf(const SCENE_ORBIT& orbit);

/// An interpolation's name and numbers, as GENERAL_ORBIT takes them from the text.
struct INTERPOLATION_WORDS {
  std::string name;
  int order = 4;
  int support_points = 5;

  explicit INTERPOLATION_WORDS(const std::string& text);
  /// How many samples it needs beyond the scene at each end so that a time lies in the middle of
  /// those that it uses.
  std::size_t Margin() const;
};

}  // namespace varnoth::tools
