#include "framework/tables/log_table.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "foundation/errors.hpp"
#include "framework/log/file_access.hpp"
#include "framework/log/temporary_file.hpp"

namespace varnoth {

namespace {

constexpr int CELL_LIMIT = 255;

/// Adds a cell, padded to its column's width.
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
  const std::string path = CreateTemporaryFile("/tmp/", "table_");
  file_name = path.empty() ? "/tmp/table_0815" : path.c_str();
  // A name that was not made for this table may be somebody else's file.
  if (!path.empty()) file = OpenStream(path.c_str(), O_WRONLY);
  if (file == nullptr) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not open tmp file: " << file_name << "\n";
    if (!path.empty()) unlink(path.c_str());
    throw "can not write to /tmp";
  }
}

LOG_TABLE::~LOG_TABLE() {
  file.reset();
  if (unlink(file_name.c_str()) != 0) {
    const int reason = errno;
    GlobalLog.set(WARNING) << "can not remove tmp file: " << file_name << "\n";
    GlobalLog.set(WARNING) << "reason: " << std::strerror(reason) << "\n";
  }
}

void LOG_TABLE::row(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  if (GlobalLog.is_capturing()) {
    std::va_list copy;
    va_copy(copy, arguments);
    char text[1030];
    std::vsnprintf(text, sizeof text, format, copy);
    va_end(copy);
    GlobalLog.Capture(text);
    GlobalLog.Capture("\n");
  }
  std::vfprintf(file.get(), format, arguments);
  va_end(arguments);
  new_line();
}

void LOG_TABLE::printf(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(file.get(), format, arguments);
  va_end(arguments);
  std::fflush(file.get());
}

void LOG_TABLE::new_line() {
  std::fputc('\n', file.get());
  std::fflush(file.get());
}

void LOG_TABLE::rule() {
  std::fputs("-\n", file.get());
  std::fflush(file.get());
}

void LOG_TABLE::set_rule(char fill, char cross) {
  rule_char = fill;
  rule_cross = cross;
}

void LOG_TABLE::set_second_rule(char fill, char cross) {
  second_rule_char = fill;
  second_rule_cross = cross;
}

OWNED_FILE LOG_TABLE::Reopen() const {
  OWNED_FILE reader = OpenStream(file_name.c_str(), O_RDONLY);
  if (reader == nullptr) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not open tmp file: " << file_name << "\n";
    throw "can not open tmp file";
  }
  return reader;
}

void LOG_TABLE::CheckRead(const OWNED_FILE& reader) const {
  if (std::ferror(reader.get()) == 0) return;
  GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not read tmp file: " << file_name << "\n";
  throw "can not read tmp file";
}

int LOG_TABLE::MarkOf(int character) const {
  const char* mark = character > 0 ? std::strchr(marks, character) : nullptr;
  return mark != nullptr ? static_cast<int>(mark - marks) : -1;
}

int LOG_TABLE::WidthOf(int column) const {
  return column >= 0 && column < widths.GetLength() ? widths.GetElementBase(0)[column] : 0;
}

void LOG_TABLE::flush(int level) {
  if (std::fflush(file.get()) != 0 || std::ferror(file.get()) != 0) {
    GlobalLog.set(EXCEPTION) << "LOG_TABLE: can not write tmp file: " << file_name << "\n";
    throw "can not write to /tmp";
  }
  MeasureColumns(CountColumns());
  PrintRows(level);
}

int LOG_TABLE::CountColumns() const {
  const OWNED_FILE reader = Reopen();
  int separators = 0;
  bool in_row = false;
  for (int c = std::fgetc(reader.get()); c != EOF; c = std::fgetc(reader.get())) {
    if (!in_row && (c == '\n' || c == '-')) continue;
    if (c == '\n') break;
    in_row = true;
    if (MarkOf(c) >= 0) ++separators;
  }
  CheckRead(reader);
  return std::max(separators - 1, 0);
}

void LOG_TABLE::MeasureColumns(int count) {
  if (widths.Resize(RANGE<int>(0, count)) != ARRAY_OK) throw ERROR_NO_MEMORY();
  int* const width = widths.GetElementBase(0);
  std::fill_n(width, count, 0);
  const OWNED_FILE reader = Reopen();
  int column = -1;
  int length = -1;
  for (int c = std::fgetc(reader.get()); c != EOF; c = std::fgetc(reader.get())) {
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
    // The "@" and the character behind it count as none together.
    length += c == '@' ? -1 : 1;
  }
  CheckRead(reader);
}

void LOG_TABLE::PrintRows(int level) const {
  const OWNED_FILE reader = Reopen();
  std::string line;
  std::string cell;
  char alignment = 'c';
  int column = -1;
  bool at_start = true;
  for (int c = std::fgetc(reader.get());; c = std::fgetc(reader.get())) {
    if (c == EOF && at_start) break;
    if (at_start && c == '-') {
      PrintRule(level);
      std::fgetc(reader.get());
      continue;
    }
    at_start = false;
    if (c == '\n' || c == EOF) {
      GlobalLog.set(level) << line << "\n";
      line.clear();
      cell.clear();
      alignment = 'c';
      column = -1;
      at_start = true;
      if (c == EOF) break;
    } else if (c == '@') {
      alignment = static_cast<char>(std::fgetc(reader.get()));
    } else if (const int mark = MarkOf(c); mark < 0) {
      cell += static_cast<char>(c);
    } else {
      if (column >= 0) AppendCell(line, cell, alignment, WidthOf(column));
      line += row_map[mark];
      cell.clear();
      alignment = 'c';
      ++column;
    }
  }
  CheckRead(reader);
}

void LOG_TABLE::PrintRule(int level) const {
  const OWNED_FILE reader = Reopen();
  int c = std::fgetc(reader.get());
  while (c == '-' || c == '\n') c = std::fgetc(reader.get());
  std::string line;
  int column = 0;
  for (; c != '\n' && c != EOF; c = std::fgetc(reader.get())) {
    const int mark = MarkOf(c);
    if (mark < 0) continue;
    line += rule_map[mark];
    line.append(static_cast<std::size_t>(WidthOf(column)), rule_char);
    ++column;
  }
  CheckRead(reader);
  GlobalLog.set(level) << line << "\n";
}

}  // namespace varnoth
