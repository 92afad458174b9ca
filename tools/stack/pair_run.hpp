#pragma once

#include <set>
#include <string>
#include <vector>

#include "tools/stack/child.hpp"

namespace varnoth::tools {

enum class PAIR_END { DONE, FAILED, STOPPED, INTERRUPTED };

/// Runs pairs on copies, since results go into an input file, and keeps what comes of them in one
/// directory: NAME/ of a pair that is done, whole; failed/NAME.log or stopped/NAME.log of one that
/// is not. An older result stays until a whole new one takes its place. A copy that was left by a
/// killed process is removed.
class PAIR_RUNNER {
 public:
  /// The directory of the results is made for the first pair. Throws std::runtime_error where there
  /// is no program: the variable VARNOTH names it, else varnoth on the path.
  explicit PAIR_RUNNER(const std::string& where);

  /// Tells why a pair is not done. Throws std::runtime_error for what is no pair, for a name that
  /// its results can't have, for results that would replace it, and for a failure of the file
  /// system.
  PAIR_END Run(const std::string& pair);

  const HELD_SIGNALS& Signals() const { return signals; }

 private:
  void FindHidden();
  void Place(const std::string& work, const std::string& name) const;
  PAIR_END Keep(const std::string& work, const std::string& name, int status) const;

  HELD_SIGNALS signals;
  std::string results;
  std::string program;
  std::set<std::string> taken;  ///< names of the pairs so far
  /// Names that began with a point in the results when the first pair began: one listing for all
  /// pairs, since the results may be a hundred thousand.
  std::vector<std::string> hidden;
};

}  // namespace varnoth::tools
