#pragma once

#include "system/signal_safe/text_sink.hpp"

namespace varnoth {

/// Severity of a log message. Callers and thresholds use the numbers.
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

/// Names and style of a level.
struct LEVEL_ROW {
  std::string_view label;    ///< five characters, for the head of a line
  const char* name;          ///< long name, for thresholds; null in row 0
  const char* screen_style;  ///< escape sequence; empty for plain text
};

/// The rows by level; row 0 stands for numbers that are no level.
inline constexpr LEVEL_ROW LEVELS[] = {
    {"LEV_?", nullptr, ""},          {"TRACE", "TRACE", ""},
    {"DEBUG", "DEBUG", ""},          {"PARAM", "PARAMETER", ""},
    {"INFO ", "INFO", ""},           {"QA_WA", "QA_WARNING", ""},
    {"WARN ", "WARNING", "\033[4m"}, {"EXCEP", "EXCEPTION", "\033[1m"},
    {"ALARM", "ALARM", "\033[7m"},
};

/// The row of a level: `RowOf(ALARM).label`; row 0 for any other number.
constexpr const LEVEL_ROW& RowOf(int level) {
  return LEVELS[level >= TRACE && level <= ALARM ? level : 0];
}

/// One of the two places where the log's lines go.
struct LOG_OUTLET {
  int lowest_level = DEBUG;
  TEXT_SINK sink;

  bool Shows(int level) const { return sink.IsOpen() && level >= lowest_level; }
};

/// Where the log's lines go, and the word of their heads. Needs no destruction, so that a signal
/// at the very end still finds it.
///
///     LOG_OUTLETS& outlets = GlobalLog.Outlets();
///     outlets.AppendLine(outlets.screen.sink, INFO, "done");
///     outlets.screen.sink.Flush();
struct LOG_OUTLETS {
  std::string_view prefix;
  LOG_OUTLET screen{.sink = TEXT_SINK(1)};
  LOG_OUTLET file;

  /// Begins a line: "LABEL : word : ".
  void AppendHead(TEXT_SINK& sink, int level) const;
  /// Adds a whole line: head, text and line end.
  void AppendLine(TEXT_SINK& sink, int level, std::string_view text) const;
};

}  // namespace varnoth
