#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/report/record.hpp"

namespace varnoth::tools {

/// Directories and logs to read, in the order of the report: failed pairs, stopped ones, the others
/// by name.
struct COLLECTION {
  struct PLACE {
    std::string path;
    ENDING kept_as = ENDING::DONE;  ///< FAILED and STOPPED are logs, others are directories
  };
  std::vector<PLACE> places;
  std::vector<REMARK> remarks;
  bool has_results_directory = false;
};

/// Finds the pairs in what a user names: a pair's directory has an insar.pool; a results directory
/// has those of pairs, and the logs of others in failed/ and stopped/. Hidden directories, in which
/// pairs are at work, are left out.
COLLECTION FindPairs(const std::vector<std::string>& places);

/// Reads one place.
PAIR_RECORD ReadPlace(const COLLECTION::PLACE& place);

}  // namespace varnoth::tools
