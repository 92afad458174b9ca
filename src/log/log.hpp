#pragma once

#include <cstdarg>
#include <ctime>
#include <list>
#include <mutex>
#include <string>
#include <string_view>

#include "system/signal_safe/log_outlets.hpp"
#include "system/static_object.hpp"

namespace varnoth {

/// Level of a long name ("TRACE" … "ALARM", exact), or NO_LEVEL for any other text.
LOG_LEVEL LogLevelFromName(const char* name);

/// "execution time:" and how many days, hours, minutes and seconds that is.
std::string ExecutionTimeText(long seconds);

/// What `LOG::banner` prints about the program.
struct BANNER_INFO {
  std::string name;
  std::string version;
  std::string date;
  std::string compiler_user;
  std::string configuration_file;
  std::string full_version;
};

/// The process-wide logger. Every message goes to the screen (standard output) and to a log file,
/// each with a lowest level of its own. A line reads
///
///     ALARM : varnoth : text
///
/// A message is either built of pieces behind `set`, whose last piece ends in "\n", or written
/// whole by `printf_line`. Use the instance `GlobalLog`.
///
/// The pieces take no lock; everything else is guarded by one mutex. A fatal signal finds what was
/// written so far in the outlets, and ends a line that it broke.
class LOG {
 public:
  /// Starts on a temporary file "log." and six random characters in /tmp, else /var/tmp, else the
  /// current directory, with the word "global" and both thresholds at DEBUG. If none of them takes
  /// the file, the log has only the screen.
  LOG();
  ~LOG();
  LOG(const LOG&) = delete;
  LOG& operator=(const LOG&) = delete;

  /// Starts a message: writes the line's head.
  LOG& set(int level);

  /// Adds a piece to the message under way. Floating values differ between file and screen: the
  /// file has printf's "%f" ("%LG" for long double), the screen six significant digits.
  LOG& operator<<(const char* text) { return Text(text != nullptr ? text : "(null)"); }
  /// A text value, such as std::string.
  template <class TEXT>
  requires requires(const TEXT& text) { text.c_str(); }
  LOG& operator<<(const TEXT& text) { return *this << text.c_str(); }
  LOG& operator<<(char value) { return Text({&value, 1}); }
  LOG& operator<<(unsigned char value) { return *this << static_cast<char>(value); }
  LOG& operator<<(short value) { return Piece("%d", "%d", value); }
  LOG& operator<<(unsigned short value) { return Piece("%u", "%u", static_cast<unsigned>(value)); }
  LOG& operator<<(int value) { return Piece("%d", "%d", value); }
  LOG& operator<<(unsigned int value) { return Piece("%u", "%u", value); }
  LOG& operator<<(long value) { return Piece("%ld", "%ld", value); }
  LOG& operator<<(unsigned long value) { return Piece("%lu", "%lu", value); }
  LOG& operator<<(long long value) { return Piece("%lld", "%lld", value); }
  LOG& operator<<(float value) { return Piece("%f", "%g", static_cast<double>(value)); }
  LOG& operator<<(double value) { return Piece("%f", "%g", value); }
  LOG& operator<<(long double value) { return Piece("%LG", "%Lg", value); }

  /// Writes a whole message with a line end and flushes it. On the screen WARNING is underlined,
  /// EXCEPTION bold and ALARM inverse.
  void printf_line(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

  /// Names the program: default log file name (may be empty), word of the line heads, thresholds.
  void configure(const char* name, const char* prefix_word, int screen_level, int file_level);

  /// Closes what is open and opens `path` for appending. On failure tells so on the screen and
  /// gives false; the log then has only the screen.
  bool open_file(const char* path, const char* prefix_word, int screen_level, int file_level);

  /// Moves the log to its final file: what stood in the old file is appended to `path` and the old
  /// file removed. Ends the process with exit status 255 if `path` can't be opened.
  void change_file(const char* path);

  void set_screen_level(int level);
  void set_file_level(int level);
  /// True if the name is one of the eight long names; otherwise the threshold stays.
  bool set_screen_level(const char* name);
  bool set_file_level(const char* name);

  /// Whether a message of level QA_WARNING was begun since the last `open_file`.
  bool qa_warning_seen() const { return qa_flag; }
  const std::string& get_configured_name() const { return configured_name; }
  const std::string& get_file_path() const { return file_path; }

  /// Program, build, start time, host and configuration at level INFO; the full version at DEBUG.
  void banner(const BANNER_INFO& info);
  /// A shorter head for a part of a run.
  void start_banner(const char* title);
  /// Execution time since the log was created, and the end time.
  void end_banner();

  /// Hands what the file side has buffered to the system. False if there is no file, or if anything
  /// since its opening could not be written into it.
  bool flush();

  /// Where the lines go, for the handler of fatal signals.
  LOG_OUTLETS& Outlets() { return outlets; }

  /// Keeps the text of messages that reach the screen, without the heads, in `captured()`.
  void set_capture(bool on) { capture = on; }
  bool is_capturing() const { return capture; }
  const std::list<std::string>& captured() const { return captured_lines; }
  const std::string& last_captured_line() const { return last_line; }
  /// Adds text to the captured lines.
  void Capture(std::string_view text);

 private:
  template <class VALUE>
  LOG& Piece(const char* file_format, const char* screen_format, VALUE value) {
    if (current_level >= lowest_level) WriteNumber(file_format, screen_format, value);
    return *this;
  }
  LOG& Text(std::string_view text) {
    if (current_level >= lowest_level) WritePiece(text, text);
    return *this;
  }
  void WriteNumber(const char* file_format, const char* screen_format, ...);
  void WritePiece(std::string_view in_file, std::string_view on_screen);
  void WriteLine(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));
  void WriteLine(int level, const char* format, std::va_list arguments);
  void SetLevels(int screen_level, int file_level);
  void SetPrefix(const char* word);
  void WriteStartLine();
  bool OpenForAppending(const char* path);
  /// A file that lacks lines is told of on the screen.
  void CloseFile();
  /// What can only be told on the screen.
  void ScreenFailure(const char* text, const std::string& name);

  LOG_OUTLETS outlets;
  int lowest_level = DEBUG;  ///< the lower one of the thresholds: below it nothing is formatted
  int current_level = TRACE;
  std::string prefix;
  std::string configured_name;
  std::string file_path;
  std::time_t start_time = 0;
  bool qa_flag = false;
  bool capture = false;
  char scratch[1030] = {};
  std::string pending_line;
  std::string last_line;
  std::list<std::string> captured_lines;
  std::mutex mutex;
};

static const STATIC_OBJECT<LOG> log_user;
/// The log of the process.
inline LOG& GlobalLog = STATIC_OBJECT<LOG>::Get();

}  // namespace varnoth
