#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/message.hpp"

namespace varnoth {

// The subcommands of "varnoth-tools pool". Results go to standard output, messages to standard
// error.

/// Prints the entries of pools as aligned text or as JSON.
TOOL_STATUS ShowPools(const std::vector<std::string>& files, bool as_json);

/// Prints one value: a vector's elements line by line, a matrix row by row.
TOOL_STATUS GetValue(const std::string& file, const std::string& key, bool as_json);

struct SET_REQUEST {
  std::string file;
  std::string key;
  std::string type;  ///< a scalar or vector type; a scalar's with several values makes a vector
  std::vector<std::string> values;
  std::optional<std::string> comment;
};

/// Changes or adds an entry of a pool in its place, under the lock that updates take. On failure
/// the old content is there again.
TOOL_STATUS SetValue(const SET_REQUEST& request);

struct DIFF_LIMITS {
  std::map<std::string, double> of_key;  ///< largest absolute difference
  double relative = 0.0;                 ///< largest difference as a part of the larger value
};

/// Compares what a run reads from two pools, and prints each difference with both values.
TOOL_STATUS DiffPools(const std::string& one, const std::string& other, const DIFF_LIMITS& limits);

/// Tells everything in pools that a run refuses, or reads differently from what stands there.
TOOL_STATUS CheckPools(const std::vector<std::string>& files);

}  // namespace varnoth
