#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/message.hpp"
#include "tools/pool/document.hpp"

namespace varnoth::tools {

/// What makes a run fail, or what it takes without a word.
struct FINDING {
  SEVERITY level = SEVERITY::ERROR;
  std::string code;      ///< a word for programs: "key-missing"
  std::string file;      ///< empty where the finding concerns no file
  std::size_t line = 0;  ///< from 1; 0 for none
  std::string key;       ///< of a pool or of the configuration; may be empty
  std::string message;   ///< with the value
  std::string remedy;
  /// A warning that explains a failure which says nothing itself, such as an arithmetic fault: an
  /// error once the run is known to fail.
  bool is_cause = false;
};
using FINDING_LIST = std::vector<FINDING>;

JSON ToJson(const FINDING& finding);
FINDING FindingFromJson(const JSON& json);

/// Writes a finding to standard error.
void Tell(const FINDING& finding);

/// A number for a message, six significant digits.
std::string Short(double value);

}  // namespace varnoth::tools
