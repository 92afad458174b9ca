#pragma once

#include <string>
#include <vector>

#include "tools/message.hpp"
#include "tools/stack/network.hpp"

namespace varnoth::tools {

struct PLAN_REQUEST {
  std::vector<std::string> places;  ///< scene pools, and folders of them
  std::string out;                  ///< directory of the plan
  std::string reference;            ///< a date, as 2018-01-06; empty: the best one
  double height = 0.0;              ///< of the point that baselines are told for, m
  NETWORK_REQUEST network;
  std::string make;  ///< directory for the pairs' directories; empty: none are made
};

/// Prints the scenes of a stack with their baselines, and writes the pairs of a network.
TOOL_STATUS PlanStack(const PLAN_REQUEST& request);

struct RUN_REQUEST {
  std::vector<std::string> pairs;  ///< directories
  std::string results;             ///< directory
};

/// Runs pairs, one after the other.
TOOL_STATUS RunStack(const RUN_REQUEST& request);

}  // namespace varnoth::tools
