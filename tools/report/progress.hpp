#pragma once

#include <chrono>
#include <cstddef>

namespace varnoth::tools {

/// A bar on a terminal behind standard error; elsewhere nothing.
class PROGRESS {
 public:
  explicit PROGRESS(std::size_t pairs);
  ~PROGRESS();
  PROGRESS(const PROGRESS&) = delete;
  PROGRESS& operator=(const PROGRESS&) = delete;

  void Step();
  /// Takes the bar away, so that a message can stand there.
  void Clear();

 private:
  bool is_shown = false;  ///< on this terminal at all
  bool is_drawn = false;
  std::size_t total = 0;
  std::size_t done = 0;
  std::chrono::steady_clock::time_point drawn_at;
};

}  // namespace varnoth::tools
