#pragma once

#include <string>
#include <vector>

namespace varnoth::tools {

/// Holds back the signals that ask a program to end (SIGHUP, SIGINT, SIGTERM) while it lives, so
/// that what is begun is tidied up first.
class HELD_SIGNALS {
 public:
  HELD_SIGNALS();
  ~HELD_SIGNALS();
  HELD_SIGNALS(const HELD_SIGNALS&) = delete;
  HELD_SIGNALS& operator=(const HELD_SIGNALS&) = delete;

  /// One that has come meanwhile, or 0.
  int Pending() const;

  /// Runs a program in a directory, without input and output; what it writes to standard error goes
  /// to ours. A signal that comes is passed on to it. Gives its exit status, or 128 + the signal
  /// that ended it. Throws std::runtime_error where it can't be started.
  int Run(const std::string& program, const std::vector<std::string>& arguments,
          const std::string& directory) const;
};

}  // namespace varnoth::tools
