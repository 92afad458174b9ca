#include "framework/log/log.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "framework/log/file_access.hpp"
#include "framework/log/temporary_file.hpp"

namespace varnoth {

namespace {

struct LEVEL_ROW {
  const char* label;  ///< five characters, as a line shows it
  const char* name;   ///< long name, as thresholds are given
  const char* screen_style;
};

constexpr LEVEL_ROW LEVELS[] = {
    {"LEV_?", nullptr, ""},          {"TRACE", "TRACE", ""},
    {"DEBUG", "DEBUG", ""},          {"PARAM", "PARAMETER", ""},
    {"INFO ", "INFO", ""},           {"QA_WA", "QA_WARNING", ""},
    {"WARN ", "WARNING", "\033[4m"}, {"EXCEP", "EXCEPTION", "\033[1m"},
    {"ALARM", "ALARM", "\033[7m"},
};
constexpr const char* STYLE_RESET = "\033[0m";
constexpr const char* ASTERISKS = "***********************************************************";

const LEVEL_ROW& RowOf(int level) {
  return level >= TRACE && level <= ALARM ? LEVELS[level] : LEVELS[0];
}

/// The present form of a time in local time, as in "Tue Nov 24 21:06:38 2026".
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

void ScreenFailure(const std::string& prefix, const char* text, const std::string& name) {
  std::printf("ALARM : %s :  :  %s%s\n", prefix.c_str(), text, name.c_str());
  std::fflush(stdout);
}

/// Where a starter closed standard input, output or error, the next file that the process opens
/// would take its place, and the screen's lines would go into a pool.
void OccupyStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", O_RDWR);
  }
}

OWNED_FILE OpenForAppending(const char* path) {
  return OpenStream(path, O_WRONLY | O_CREAT | O_APPEND);
}

/// Whether two paths lead to one file.
bool IsSameFile(const char* one, const char* other) {
  struct stat of_one {};
  struct stat of_other {};
  return ::stat(one, &of_one) == 0 && ::stat(other, &of_other) == 0 &&
         of_one.st_dev == of_other.st_dev && of_one.st_ino == of_other.st_ino;
}

bool AppendContent(std::FILE* from, std::FILE* to) {
  char block[8192];
  std::size_t count = 0;
  while ((count = std::fread(block, 1, sizeof block, from)) > 0) std::fwrite(block, 1, count, to);
  return std::ferror(from) == 0 && std::fflush(to) == 0 && std::ferror(to) == 0;
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
  prefix = "global";
  start_time = std::time(nullptr);
  for (const char* directory : {"/tmp/", "/var/tmp/", "./"}) {
    const std::string path = CreateTemporaryFile(directory, "log.");
    if (path.empty()) {
      ScreenFailure(prefix, "can not open logging file: ", std::string(directory) + "log.");
    } else if (open_file(path.c_str(), "global", DEBUG, DEBUG)) {
      return;
    } else {
      unlink(path.c_str());
    }
  }
}

LOG::~LOG() { CloseFile(); }

LOG& LOG::set(int level) {
  if (level == QA_WARNING) qa_flag = true;
  current_level = level;
  // The first piece takes the head to the screen with it.
  if (ShownOnScreen()) std::printf("%s : %s : ", RowOf(level).label, prefix.c_str());
  if (ShownInFile()) std::fprintf(file.get(), "%s : %s : ", RowOf(level).label, prefix.c_str());
  return *this;
}

void LOG::WritePiece(const char* file_format, const char* screen_format, ...) {
  std::va_list arguments;
  if (ShownOnScreen()) {
    va_start(arguments, screen_format);
    std::vprintf(screen_format, arguments);
    va_end(arguments);
    std::fflush(stdout);
    if (capture) {
      va_start(arguments, screen_format);
      std::vsnprintf(scratch, sizeof scratch, file_format, arguments);
      va_end(arguments);
      Capture(scratch);
    }
  }
  if (ShownInFile()) {
    va_start(arguments, screen_format);
    std::vfprintf(file.get(), file_format, arguments);
    va_end(arguments);
  }
}

void LOG::Capture(const char* text) {
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
  const LEVEL_ROW& row = RowOf(level);
  // Formatted once for all who take it; only a line that the buffer cuts is formatted again.
  std::va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(scratch, sizeof scratch, format, copy);
  va_end(copy);
  const bool is_whole = length >= 0 && static_cast<std::size_t>(length) < sizeof scratch;
  const auto print = [&](std::FILE* stream) {
    std::va_list again;
    va_copy(again, arguments);
    is_whole ? std::fputs(scratch, stream) : std::vfprintf(stream, format, again);
    va_end(again);
  };
  if (ShownOnScreen()) {
    std::printf("%s%s : %s : ", row.screen_style, row.label, prefix.c_str());
    print(stdout);
    std::printf("\n%s", level > QA_WARNING ? STYLE_RESET : "");
    std::fflush(stdout);
    if (capture) {
      Capture(scratch);
      Capture("\n");
    }
  }
  if (ShownInFile()) {
    std::fprintf(file.get(), "%s : %s : ", row.label, prefix.c_str());
    print(file.get());
    std::fputc('\n', file.get());
    std::fflush(file.get());
  }
}

void LOG::SetLevels(int screen, int file_threshold) {
  screen_level = screen;
  file_level = file_threshold;
  lowest_level = std::min(screen, file_threshold);
}

void LOG::configure(const char* name, const char* prefix_word, int screen, int file_threshold) {
  configured_name = name;
  prefix = prefix_word;
  SetLevels(screen, file_threshold);
}

bool LOG::open_file(const char* path, const char* prefix_word, int screen, int file_threshold) {
  prefix = prefix_word;
  SetLevels(screen, file_threshold);
  qa_flag = false;
  current_level = TRACE;
  start_time = std::time(nullptr);
  CloseFile();
  file = OpenForAppending(path);
  if (file == nullptr) {
    ScreenFailure(prefix, "can not open logging file: ", path);
    return false;
  }
  file_path = path;
  return true;
}

void LOG::change_file(const char* path) {
  const std::lock_guard lock(mutex);
  const bool had_file = file != nullptr;
  if (had_file && IsSameFile(file_path.c_str(), path)) return;  // it would be copied into itself
  const std::string old_path = file_path;
  CloseFile();
  file = OpenForAppending(path);
  if (file == nullptr) {
    ScreenFailure(prefix, " can not open logging file: ", path);
    std::exit(-1);
  }
  file_path = path;
  if (!had_file) return;

  const OWNED_FILE old = OpenStream(old_path.c_str(), O_RDONLY);
  if (old == nullptr) {
    ScreenFailure(prefix, " can not reopen tmp logging file: ", old_path);
    return;
  }
  if (!AppendContent(old.get(), file.get())) {
    ScreenFailure(prefix, " can not copy tmp logging file: ", old_path);
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
  SetLevels(level, file_level);
}

void LOG::set_file_level(int level) {
  const std::lock_guard lock(mutex);
  SetLevels(screen_level, level);
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
  // A clock that was set back gives no time either.
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

bool LOG::flush() {
  return file != nullptr && std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
}

void LOG::CloseFile() {
  if (file == nullptr) return;
  const bool is_complete = flush();
  if (std::fclose(file.release()) != 0 || !is_complete) {
    ScreenFailure(prefix, " log file is incomplete: ", file_path);
  }
}

}  // namespace varnoth
