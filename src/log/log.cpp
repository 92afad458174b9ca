#include "log/log.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "system/signal_safe/descriptor.hpp"
#include "system/signal_safe/restarted.hpp"
#include "system/signal_safe/uninterrupted.hpp"
#include "system/temporary_file.hpp"
#include "text/formatted_text.hpp"

namespace varnoth {

namespace {

constexpr const char* STYLE_RESET = "\033[0m";
constexpr const char* ASTERISKS = "***********************************************************";

/// A time as local time, such as "Tue Nov 24 21:06:38 2026".
std::string TimeText(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  char text[64];
  const std::size_t length = std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &local);
  return {text, length};
}

std::string HostName() {
  char name[256] = {};
  if (gethostname(name, sizeof name - 1) != 0) return "unknown";
  return name;
}

/// Fills the places of standard input, output and error that the starter closed. Otherwise the next
/// file that the process opens takes such a place, and the screen's lines go into a pool.
void OccupyStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

/// Whether two paths lead to the same file.
bool IsSameFile(const char* one, const char* other) {
  struct stat of_one {};
  struct stat of_other {};
  return ::stat(one, &of_one) == 0 && ::stat(other, &of_other) == 0 &&
         of_one.st_dev == of_other.st_dev && of_one.st_ino == of_other.st_ino;
}

}  // namespace

LOG_LEVEL LogLevelFromName(const char* name) {
  const auto* row =
      std::find_if(std::next(std::begin(LEVELS)), std::end(LEVELS),
                   [&](const LEVEL_ROW& r) { return std::strcmp(r.name, name) == 0; });
  return row == std::end(LEVELS) ? NO_LEVEL
                                 : static_cast<LOG_LEVEL>(std::distance(std::begin(LEVELS), row));
}

LOG::LOG() {
  OccupyStandardDescriptors();
  SetPrefix("global");
  start_time = std::time(nullptr);
  for (const char* directory : {"/tmp/", "/var/tmp/", "./"}) {
    const TEMPORARY_FILE made = CreateTemporaryFile(directory, "log.", O_APPEND);
    if (made.descriptor >= 0) {
      outlets.file.sink.Open(made.descriptor);
      file_path = made.path;
      break;
    }
    ScreenFailure("can not open logging file: ", std::string(directory) + "log.");
  }
  SetLevels(DEBUG, DEBUG);
}

LOG::~LOG() {
  CloseFile();
  SetPrefix("");
}

LOG& LOG::set(int level) {
  if (level == QA_WARNING) qa_flag = true;
  current_level = level;
  // The first piece flushes the head to the screen.
  for (LOG_OUTLET* outlet : {&outlets.screen, &outlets.file}) {
    if (outlet->Shows(level)) outlets.AppendHead(outlet->sink, level);
  }
  return *this;
}

void LOG::WriteNumber(const char* file_format, const char* screen_format, ...) {
  char in_file[512];  // "%f" takes up to 317 characters
  char on_screen[512];
  std::va_list arguments;
  va_start(arguments, screen_format);
  const int file_length = FormatText(in_file, sizeof in_file, file_format, arguments);
  va_end(arguments);
  va_start(arguments, screen_format);
  const int screen_length = FormatText(on_screen, sizeof on_screen, screen_format, arguments);
  va_end(arguments);
  WritePiece({in_file, static_cast<std::size_t>(file_length)},
             {on_screen, static_cast<std::size_t>(screen_length)});
}

void LOG::WritePiece(std::string_view in_file, std::string_view on_screen) {
  if (outlets.screen.Shows(current_level)) {
    outlets.screen.sink.Append(on_screen);
    outlets.screen.sink.Flush();
    if (capture) Capture(in_file);
  }
  if (outlets.file.Shows(current_level)) outlets.file.sink.Append(in_file);
}

void LOG::Capture(std::string_view text) {
  pending_line += text;
  if (pending_line.empty() || pending_line.back() != '\n') return;
  pending_line.pop_back();
  last_line = pending_line;
  captured_lines.push_back(std::move(pending_line));
  pending_line.clear();
}

void LOG::printf_line(int level, const char* format, ...) {
  const std::lock_guard lock(mutex);
  std::va_list arguments;
  va_start(arguments, format);
  WriteLine(level, format, arguments);
  va_end(arguments);
}

void LOG::WriteLine(int level, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  WriteLine(level, format, arguments);
  va_end(arguments);
}

void LOG::WriteLine(int level, const char* format, std::va_list arguments) {
  if (level == QA_WARNING) qa_flag = true;
  current_level = level;
  if (current_level < lowest_level) return;
  std::va_list copy;
  va_copy(copy, arguments);
  const int length = std::max(FormatText(scratch, sizeof scratch, format, copy), 0);
  va_end(copy);
  std::string_view text(scratch, std::min<std::size_t>(length, sizeof scratch - 1));
  std::string longer;
  if (text.size() < static_cast<std::size_t>(length)) {
    longer.resize(length);
    std::vsnprintf(longer.data(), longer.size() + 1, format, arguments);
    text = longer;
  }
  const UNINTERRUPTED whole;
  if (outlets.screen.Shows(level)) {
    TEXT_SINK& screen = outlets.screen.sink;
    screen.AppendUnseen(RowOf(level).screen_style);
    outlets.AppendLine(screen, level, text);
    if (level > QA_WARNING) screen.AppendUnseen(STYLE_RESET);
    screen.Flush();
    if (capture) {
      Capture(scratch);
      Capture("\n");
    }
  }
  if (outlets.file.Shows(level)) {
    TEXT_SINK& file = outlets.file.sink;
    outlets.AppendLine(file, level, text);
    file.Flush();
  }
}

void LOG::SetLevels(int screen_level, int file_level) {
  outlets.screen.lowest_level = screen_level;
  outlets.file.lowest_level = file_level;
  lowest_level = std::min(screen_level, file_level);
}

void LOG::SetPrefix(const char* word) {
  const UNINTERRUPTED whole;
  prefix = word;
  outlets.prefix = prefix;
}

void LOG::configure(const char* name, const char* prefix_word, int screen_level, int file_level) {
  configured_name = name;
  SetPrefix(prefix_word);
  SetLevels(screen_level, file_level);
}

bool LOG::open_file(const char* path, const char* prefix_word, int screen_level, int file_level) {
  SetPrefix(prefix_word);
  SetLevels(screen_level, file_level);
  qa_flag = false;
  current_level = TRACE;
  start_time = std::time(nullptr);
  CloseFile();
  if (!OpenForAppending(path)) {
    ScreenFailure("can not open logging file: ", path);
    return false;
  }
  file_path = path;
  return true;
}

void LOG::change_file(const char* path) {
  const std::lock_guard lock(mutex);
  const bool had_file = outlets.file.sink.IsOpen();
  if (had_file && IsSameFile(file_path.c_str(), path)) return;  // don't copy a file into itself
  const UNINTERRUPTED whole;  // between the two files, a signal's lines have none
  const std::string old_path = file_path;
  CloseFile();
  if (!OpenForAppending(path)) {
    ScreenFailure(" can not open logging file: ", path);
    std::exit(-1);
  }
  file_path = path;
  if (!had_file) return;

  const int old = OpenAtOnce(old_path.c_str(), O_RDONLY);
  if (old < 0) {
    ScreenFailure(" can not reopen tmp logging file: ", old_path);
    return;
  }
  TEXT_SINK& sink = outlets.file.sink;
  const bool is_read = ReadAll(old, [&](std::string_view block) { sink.Append(block); });
  CloseDescriptor(old);
  if (!sink.Flush() || !is_read) {
    ScreenFailure(" can not copy tmp logging file: ", old_path);
    return;
  }
  if (unlink(old_path.c_str()) != 0) {
    const int reason = errno;
    WriteLine(WARNING, "can not remove tmp file: %s", old_path.c_str());
    WriteLine(WARNING, "reason: %s", std::strerror(reason));
  }
}

void LOG::set_screen_level(int level) {
  const std::lock_guard lock(mutex);
  SetLevels(level, outlets.file.lowest_level);
}

void LOG::set_file_level(int level) {
  const std::lock_guard lock(mutex);
  SetLevels(outlets.screen.lowest_level, level);
}

bool LOG::set_screen_level(const char* name) {
  const LOG_LEVEL level = LogLevelFromName(name);
  if (level != NO_LEVEL) set_screen_level(static_cast<int>(level));
  return level != NO_LEVEL;
}

bool LOG::set_file_level(const char* name) {
  const LOG_LEVEL level = LogLevelFromName(name);
  if (level != NO_LEVEL) set_file_level(static_cast<int>(level));
  return level != NO_LEVEL;
}

void LOG::WriteStartLine() {
  WriteLine(INFO, "start time: %s  hostname: %s", TimeText(std::time(nullptr)).c_str(),
            HostName().c_str());
}

void LOG::banner(const BANNER_INFO& info) {
  const std::lock_guard lock(mutex);
  WriteLine(INFO, "%s", "");
  WriteLine(INFO, "%s", ASTERISKS);
  WriteLine(INFO, "%s %s", info.name.c_str(), info.version.c_str());
  WriteLine(INFO, "%s", ASTERISKS);
  WriteLine(INFO, "compile date: %s  compiled by: %s", info.date.c_str(),
            info.compiler_user.c_str());
  WriteStartLine();
  if (const char* starter = std::getenv("PROC_NAME"); starter != nullptr) {
    const char* version = std::getenv((std::string(starter) + "_VERSION").c_str());
    WriteLine(INFO, "started by: %s%s%s", starter, version != nullptr ? " " : "",
              version != nullptr ? version : "");
  }
  WriteLine(INFO, "using configuration file %s", info.configuration_file.c_str());
  if (!info.full_version.empty()) WriteLine(DEBUG, "full version: %s", info.full_version.c_str());
}

void LOG::start_banner(const char* title) {
  const std::lock_guard lock(mutex);
  WriteLine(INFO, "%s", ASTERISKS);
  WriteLine(INFO, "%s", title);
  WriteStartLine();
}

std::string ExecutionTimeText(long seconds) {
  std::string text = "execution time:";
  const auto add = [&text](long count, const char* unit) {
    if (count > 0) text.append(" ").append(std::to_string(count)).append(unit);
  };
  add(seconds / 86400, " day(s)");
  add(seconds / 3600 % 24, " hour(s)");
  add(seconds / 60 % 60, " minute(s)");
  add(seconds % 60, " second(s)");
  // A clock that was set back gives a negative time.
  if (seconds <= 0) text += " less than 1 second";
  return text;
}

void LOG::end_banner() {
  const std::lock_guard lock(mutex);
  const int saved_level = current_level;
  const std::time_t now = std::time(nullptr);
  WriteLine(INFO, "%s",
            ExecutionTimeText(static_cast<long>(std::difftime(now, start_time))).c_str());
  WriteLine(INFO, "end time: %s", TimeText(now).c_str());
  WriteLine(INFO, "%s", ASTERISKS);
  current_level = saved_level;
}

bool LOG::flush() { return outlets.file.sink.IsOpen() && outlets.file.sink.Flush(); }

bool LOG::OpenForAppending(const char* path) {
  const int descriptor = OpenDescriptor(path, O_WRONLY | O_CREAT | O_APPEND);
  if (descriptor >= 0) outlets.file.sink.Open(descriptor);
  return descriptor >= 0;
}

void LOG::CloseFile() {
  if (outlets.file.sink.IsOpen() && !outlets.file.sink.Close()) {
    ScreenFailure(" log file is incomplete: ", file_path);
  }
}

void LOG::ScreenFailure(const char* text, const std::string& name) {
  TEXT_SINK& screen = outlets.screen.sink;
  for (const char* piece : {"ALARM : ", prefix.c_str(), " :  :  ", text, name.c_str(), "\n"}) {
    screen.Append(piece);
  }
  screen.Flush();
}

}  // namespace varnoth
