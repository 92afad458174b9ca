#pragma once

#include <string>

#include "tools/stack/network.hpp"

namespace varnoth::tools {

/// A planned stack. Baselines are told to a tenth of a millimetre.
struct PLAN {
  SCENE_STACK stack;
  std::size_t reference = 0;
  std::vector<STACK_PAIR> pairs;
  std::vector<std::vector<std::size_t>> parts;  ///< of the network; one where it is connected
};

/// `reference` (a date), `connected`, `point` (degrees, m), `scenes` with their baselines against
/// the reference and their overlap with it, and `pairs`.
std::string PlanJson(const PLAN& plan);

/// A pair a line, behind a line of names.
std::string PairsCsv(const PLAN& plan);

/// The network over dates and perpendicular baselines, as a picture.
std::string NetworkSvg(const PLAN& plan);

}  // namespace varnoth::tools
