#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace varnoth::tools {

/// A line above INFO of a run's log.
struct NOTICE {
  std::string level;     ///< "WARN", "QA_WA", "EXCEP" or "ALARM"
  std::string text;      ///< UTF-8
  std::size_t line = 0;  ///< in the file, from 1
};

/// The run's table of nine points: near, mid and far range of the first, middle and last line.
struct NINE_POINTS {
  std::array<double, 3> samples{};
  std::vector<double> lines;                  ///< three if the table is whole
  std::vector<std::array<double, 3>> values;  ///< a row per line, m
};

/// What the last run that a log holds has told.
struct RUN_LOG {
  std::string fault;            ///< why it could not be read, or not whole; else empty
  bool is_ended = false;        ///< the run told its end, good or bad
  std::string started;          ///< local time of the run, as the log has it
  std::vector<NOTICE> notices;  ///< without the missing configuration file, which is usual
  std::array<std::vector<double>, 2> phase;  ///< cycles to 0.01, at the eleven samples of a line
  std::optional<double> misfit;              ///< largest one of the polynomials, cycles
  NINE_POINTS effective_baseline;            ///< m, without a sign
  NINE_POINTS baseline;                      ///< m

  /// The cause of a failure, as far as the log tells it; else null.
  const NOTICE* FirstAlarm() const;
};

/// Reads a log without touching it.
RUN_LOG ReadRunLog(const std::string& file);

}  // namespace varnoth::tools
