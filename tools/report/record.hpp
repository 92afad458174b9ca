#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/message.hpp"
#include "tools/report/run_log.hpp"

namespace varnoth::tools {

/// How a pair ended: with results, with a log in failed/ or stopped/, or without a result.
enum class ENDING { DONE, FAILED, STOPPED, WITHOUT };

/// A message about a file that was read.
struct REMARK {
  std::string file;
  std::size_t line = 1;
  SEVERITY severity = SEVERITY::WARNING;
  std::string text;
};

/// When the first line of a scene was taken.
struct SCENE_TIME {
  std::string text;                    ///< "2025-04-06T02:20:09.449181", or as the pool has it
  std::optional<double> seconds_1970;  ///< nothing where the pool's times are no dates
};

/// What the files of a pair say.
struct PAIR_RECORD {
  std::string name;
  std::string place;  ///< directory, or log of a pair without one
  ENDING ending = ENDING::WITHOUT;
  std::map<std::string, double> numbers;               ///< by the InSAR pool's keys; may be NaN
  std::map<std::string, std::vector<double>> vectors;  ///< results of eleven samples, polynomials
  std::map<std::string, std::string> texts;
  std::array<SCENE_TIME, 2> times;             ///< master, slave
  std::array<double, 2> radar_frequency = {};  ///< Hz; 0 where it is not known
  RUN_LOG log;
  std::vector<REMARK> remarks;

  /// NaN where the pool has no such number.
  double Number(const std::string& key) const;
  bool HasResults() const { return ending == ENDING::DONE; }
};

}  // namespace varnoth::tools
