#pragma once

#include "system/signal_safe/text_sink.hpp"

namespace varnoth {

/// Severity of a log message; the numbers are those that callers and thresholds use.
enum LOG_LEVEL : int {
  TRACE = 1,
  DEBUG = 2,
  PARAMETER = 3,
  INFO = 4,
  QA_WARNING = 5,
  WARNING = 6,
  EXCEPTION = 7,
  ALARM = 8,
  NO_LEVEL = 9,  ///< above all levels: a threshold that shows nothing
};

/// What a level is called and how it shows.
struct LEVEL_ROW {
  const char* label;  ///< five characters, as a line shows it
  const char* name;   ///< long name, as thresholds are given
  const char* screen_style;
};

/// By level; row 0 is for numbers that are no level.
inline constexpr LEVEL_ROW LEVELS[] = {
    {"LEV_?", nullptr, ""},          {"TRACE", "TRACE", ""},
    {"DEBUG", "DEBUG", ""},          {"PARAM", "PARAMETER", ""},
    {"INFO ", "INFO", ""},           {"QA_WA", "QA_WARNING", ""},
    {"WARN ", "WARNING", "\033[4m"}, {"EXCEP", "EXCEPTION", "\033[1m"},
    {"ALARM", "ALARM", "\033[7m"},
};

constexpr const LEVEL_ROW& RowOf(int level) {
  return LEVELS[level >= TRACE && level <= ALARM ? level : 0];
}

/// One of the two places where the log's lines go.
struct LOG_OUTLET {
  TEXT_SINK sink;
  int lowest_level = DEBUG;

  bool Shows(int level) const { return sink.IsOpen() && level >= lowest_level; }
};

/// Where the log's lines go, and the word of their heads. Outlives the log, so that a signal at
/// the very end finds it.
struct LOG_OUTLETS {
  LOG_OUTLET screen{.sink = TEXT_SINK(1)};
  LOG_OUTLET file;
  const char* prefix = "";

  /// Begins a line: label, word.
  void AppendHead(TEXT_SINK& sink, int level) const;
};

}  // namespace varnoth
