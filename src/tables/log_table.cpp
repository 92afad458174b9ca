#include "tables/log_table.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "foundation/errors.hpp"
#include "system/signal_safe/descriptor.hpp"
#include "system/temporary_file.hpp"
#include "text/formatted_text.hpp"

namespace varnoth {

namespace {

constexpr int CELL_LIMIT = 255;

/// The first line that is not a rule.
std::string FirstRow(const std::string& text) {
  const std::size_t start = text.find_first_not_of("-\n");
  return start != text.npos ? text.substr(start, text.find('\n', start) - start) : "";
}

/// Appends a cell, padded to its column's width.
void AppendCell(std::string& line, const std::string& text, char alignment, int width) {
  const int length = static_cast<int>(text.size());
  const int pad = std::max(width - length, 0);
  int left = pad;
  if (alignment == 'c' || alignment == 'C') left = pad / 2;
  if (alignment == 'l' || alignment == 'L') left = 0;
  line.append(static_cast<std::size_t>(left), ' ');
  line += text;
  line.append(static_cast<std::size_t>(pad - left), ' ');
}

}  // namespace

LOG_TABLE::LOG_TABLE() {
  const TEMPORARY_FILE made = CreateTemporaryFile("/tmp/", "table_");
  file_name = made.path.empty() ? "/tmp/table_0815" : made.path.c_str();
  if (made.descriptor < 0) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not open tmp file: " << file_name << "\n";
    throw "can not write to /tmp";
  }
  file.Open(made.descriptor);
}

LOG_TABLE::~LOG_TABLE() {
  file.Close();
  if (unlink(file_name.c_str()) != 0) {
    const int reason = errno;
    GlobalLog.set(WARNING) << "can not remove tmp file: " << file_name << "\n";
    GlobalLog.set(WARNING) << "reason: " << std::strerror(reason) << "\n";
  }
}

void LOG_TABLE::row(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = FormattedText(format, arguments);
  va_end(arguments);
  if (GlobalLog.is_capturing()) {
    GlobalLog.Capture(text.substr(0, LOG::CAPTURE_LIMIT));
    GlobalLog.Capture("\n");
  }
  text += '\n';
  Write(text);
}

void LOG_TABLE::printf(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Write(FormattedText(format, arguments));
  va_end(arguments);
}

void LOG_TABLE::new_line() { Write("\n"); }

void LOG_TABLE::rule() { Write("-\n"); }

void LOG_TABLE::Write(std::string_view text) {
  file.Append(text);
  file.Flush();
}

void LOG_TABLE::set_rule(char fill, char cross) {
  rule_char = fill;
  rule_cross = cross;
}

void LOG_TABLE::set_second_rule(char fill, char cross) {
  second_rule_char = fill;
  second_rule_cross = cross;
}

std::string LOG_TABLE::ReadBack() const {
  const int reader = OpenAtOnce(file_name.c_str(), O_RDONLY);
  if (reader < 0) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not open tmp file: " << file_name << "\n";
    throw "can not open tmp file";
  }
  std::string text;
  const bool is_whole = ReadAll(reader, [&](std::string_view block) { text += block; });
  CloseDescriptor(reader);
  if (!is_whole) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not read tmp file: " << file_name << "\n";
    throw "can not read tmp file";
  }
  return text;
}

int LOG_TABLE::MarkOf(char character) const {
  const char* mark = character != '\0' ? std::strchr(marks, character) : nullptr;
  return mark != nullptr ? static_cast<int>(mark - marks) : -1;
}

std::size_t LOG_TABLE::PlainLength(const std::string& text, std::size_t position) const {
  return std::strcspn(text.c_str() + position, specials);
}

int LOG_TABLE::WidthOf(int column) const {
  return column >= 0 && column < widths.GetLength() ? widths.begin()[column] : 0;
}

void LOG_TABLE::flush(int level) {
  if (!file.Flush()) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not write tmp file: " << file_name << "\n";
    throw "can not write to /tmp";
  }
  const std::string text = ReadBack();
  MeasureColumns(text, CountColumns(FirstRow(text)));
  PrintRows(text, level);
}

int LOG_TABLE::CountColumns(const std::string& row) const {
  const auto separators =
      std::count_if(row.begin(), row.end(), [this](char c) { return MarkOf(c) >= 0; });
  return std::max(static_cast<int>(separators) - 1, 0);
}

void LOG_TABLE::MeasureColumns(const std::string& text, int count) {
  widths.NeedRange(RANGE<int>(0, count));
  int* const width = widths.begin();
  std::fill_n(width, count, 0);
  int column = -1;
  int length = -1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t plain = PlainLength(text, i);
    length += static_cast<int>(plain);
    i += plain;
    if (i == text.size()) break;
    const char c = text[i];
    if (MarkOf(c) >= 0) {
      if (column >= 0 && length > CELL_LIMIT) {
        GlobalLog.set(ALARM) << "LOG_TABLE: cell of " << length << " characters is longer than "
                             << CELL_LIMIT << "\n";
        throw ERROR_ARGUMENT();
      }
      if (column >= 0) width[column] = std::max(width[column], length);
      if (++column == count) column = -1;
      length = -1;
    }
    // Count nothing for "@" and the character after it: -1 and 1.
    length += c == '@' ? -1 : 1;
  }
}

void LOG_TABLE::PrintRows(const std::string& text, int level) const {
  std::string line;
  std::string cell;
  char alignment = 'c';
  int column = -1;
  bool at_start = true;
  const auto end_row = [&] {
    line += '\n';
    GlobalLog.set(level) << line;
    line.clear();
    column = -1;
    at_start = true;
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (at_start && text[i] == '-') {
      PrintRule(FirstRow(text), level);
      ++i;  // skip its line end
      continue;
    }
    at_start = false;
    const std::size_t plain = PlainLength(text, i);
    cell.append(text, i, plain);
    i += plain;
    if (i == text.size()) break;
    const char c = text[i];
    if (c == '\n') {
      end_row();
    } else if (c == '@') {
      if (++i < text.size()) alignment = text[i];
    } else if (const int mark = MarkOf(c); mark < 0) {
      cell += c;
    } else {
      if (column >= 0) AppendCell(line, cell, alignment, WidthOf(column));
      line += row_map[mark];
      cell.clear();
      alignment = 'c';
      ++column;
    }
  }
  if (!at_start) end_row();
}

void LOG_TABLE::PrintRule(const std::string& row, int level) const {
  std::string line;
  int column = 0;
  for (const char c : row) {
    const int mark = MarkOf(c);
    if (mark < 0) continue;
    line += rule_map[mark];
    line.append(static_cast<std::size_t>(WidthOf(column)), rule_char);
    ++column;
  }
  line += '\n';
  GlobalLog.set(level) << line;
}

}  // namespace varnoth
