#pragma once

#include <string>
#include <string_view>

#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "log/log.hpp"
#include "system/signal_safe/text_sink.hpp"

namespace varnoth {

/// Prints a text table with aligned columns into the log.
///
///     LOG_TABLE table;
///     table.rule();
///     table.row("|@lname|@rvalue [m]|");
///     table.row("|@lheight|@r%.3f|", 12.5);
///     table.flush(INFO);
///
/// The caller writes rows in a small mark-up: cells between separators, with a separator first and
/// last. The rows go to a temporary file; `flush` measures the columns and prints them. The
/// separators choose the look of a column's border:
///
///     mark-up    |  $  #  ~  :  *  &
///     data row   |     |  H  :  *
///     rule line  +     +  #  +  *
///
/// Inside a cell "@c", "@l" and "@r" centre the cell or align it left or right; they take no width.
/// Cells without them are centred. All rows must have as many cells as the first one.
class LOG_TABLE {
 public:
  /// Throws the text "can not write to /tmp", after a line at EXCEPTION, if it can't make the
  /// temporary file.
  LOG_TABLE();
  /// Removes the temporary file; a failure is a line at WARNING.
  ~LOG_TABLE();
  LOG_TABLE(const LOG_TABLE&) = delete;
  LOG_TABLE& operator=(const LOG_TABLE&) = delete;

  /// Adds a whole row in mark-up, formatted like printf. While the log captures, it gets
  /// the row too.
  void row(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Adds a part of a row, formatted like printf.
  void printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Ends a row that `printf` began.
  void new_line();
  /// Adds a rule line, with crossings at the separators of the first row.
  void rule();
  /// Sets the fill character of the rule lines. The mark-up determines the crossings: `cross` has
  /// no effect.
  void set_rule(char fill, char cross);
  /// Has no effect on the table.
  void set_second_rule(char fill, char cross);

  /// Prints all rows so far at a level; a second call prints them again. Throws, after a line at
  /// EXCEPTION, the text "can not open tmp file", "can not read tmp file", or "can not write to
  /// /tmp" if a row did not reach the file, and, after a line at ALARM, ERROR_ARGUMENT for a cell
  /// of more than 255 characters.
  void flush(int level);

 private:
  /// Adds text to the file at once.
  void Write(std::string_view text);
  /// The current content of the file.
  std::string ReadBack() const;
  int CountColumns(const std::string& first_row) const;
  void MeasureColumns(const std::string& text, int count);
  void PrintRows(const std::string& text, int level) const;
  /// Prints a rule line with crossings at the separators of `row`.
  void PrintRule(const std::string& row, int level) const;
  int WidthOf(int column) const;
  /// Position of a character in `marks`, or -1.
  int MarkOf(char character) const;
  /// The number of characters from a position on that have no meaning in the mark-up.
  std::size_t PlainLength(const std::string& text, std::size_t position) const;

  char rule_char = '-';
  char rule_cross = '+';
  char second_rule_char = '-';
  char second_rule_cross = '+';
  STRING file_name;
  ARRAY<int> widths;
  const char* specials = "\n@|$#~:*&";
  const char* marks = specials + 2;
  const char* row_map = "| |H:* ";
  const char* rule_map = "+ +#+* ";
  TEXT_SINK file;  ///< last: most pages of its buffer are never touched
};

}  // namespace varnoth
