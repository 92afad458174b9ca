#pragma once

#include <string>

#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "log/log.hpp"
#include "system/owned_file.hpp"

namespace varnoth {

/// Prints an aligned text table into the log without the caller knowing the column widths.
///
/// The caller writes rows in a small mark-up, which go to a temporary file: cells between
/// separators, a separator first and last. `flush` measures the columns and prints the result. The
/// separator chooses a column's look:
///
///     mark-up    |  $  #  ~  :  *  &
///     data row   |     |  H  :  *
///     rule line  +     +  #  +  *
///
/// Inside a cell "@c", "@l", "@r" centre the cell or align it left or right; they take no room.
/// Cells without a mark are centred. All rows must have as many cells as the first one.
class LOG_TABLE {
 public:
  /// Throws the text "can not write to /tmp" if no temporary file is to be had.
  LOG_TABLE();
  /// Removes the temporary file.
  ~LOG_TABLE();
  LOG_TABLE(const LOG_TABLE&) = delete;
  LOG_TABLE& operator=(const LOG_TABLE&) = delete;

  /// Adds a row.
  void row(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Adds to the row under way.
  void printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// Ends the row under way.
  void new_line();
  /// Adds a rule line.
  void rule();
  /// Characters of the rule lines: the fill is used, the crossings follow the first row's marks.
  void set_rule(char fill, char cross);
  void set_second_rule(char fill, char cross);

  /// Prints the table at a level. Throws the text "can not open tmp file", "can not read tmp file",
  /// or "can not write to /tmp" for a row that did not get into the file, and ERROR_ARGUMENT for a
  /// cell of more than 255 characters.
  void flush(int level);

 private:
  /// What stands in the file now; every pass looks anew.
  std::string ReadBack() const;
  int CountColumns() const;
  void MeasureColumns(int count);
  void PrintRows(int level) const;
  /// A rule line with crossings where a row has its separators.
  void PrintRule(const std::string& row, int level) const;
  int WidthOf(int column) const;
  /// Place of a character among the separators, or -1.
  int MarkOf(char character) const;

  char rule_char = '-';
  char rule_cross = '+';
  char second_rule_char = '-';
  char second_rule_cross = '+';
  STRING file_name;
  OWNED_FILE file;
  ARRAY<int> widths;
  const char* marks = "|$#~:*&";
  const char* row_map = "| |H:* ";
  const char* rule_map = "+ +#+* ";
};

}  // namespace varnoth
