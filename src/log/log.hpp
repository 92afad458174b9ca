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

/// Level of a long name, "TRACE" to "ALARM" in exact spelling; NO_LEVEL for any other text.
LOG_LEVEL LogLevelFromName(const char* name);

/// A time in words: "execution time: 1 minute(s) 5 second(s)" for 65. Days, hours, minutes and
/// seconds that are 0 are missing. Zero and less give "execution time: less than 1 second".
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
/// each with a threshold of its own, the lowest level that it shows. Use the instance `GlobalLog`.
/// A message consists of pieces after `set`, the last of which ends in "\n", or is one
/// `printf_line`:
///
///     GlobalLog.set(ALARM) << "can not open " << path << "\n";
///     GlobalLog.printf_line(INFO, "baseline: %.2f m", baseline);
///
/// The lines read "ALARM : varnoth : can not open pool" and "INFO  : varnoth : baseline: 120.50 m".
///
/// One mutex guards `printf_line`, `change_file`, the thresholds and the banners. Pieces and all
/// other operations take no lock: no other thread may use the log meanwhile. The handler of a fatal
/// signal finds in the outlets what the log has written so far, and ends an open line.
class LOG {
 public:
  /// Starts on a temporary file, named "log." and six random characters, with the word "global" and
  /// both thresholds at DEBUG. The directory is that of the variable TMPDIR, else /tmp, else
  /// /var/tmp, else the current one. If none of them takes the file, the log has only the screen.
  LOG();
  ~LOG();
  LOG(const LOG&) = delete;
  LOG& operator=(const LOG&) = delete;

  /// Starts a message: writes the line's head where the level reaches the threshold.
  LOG& set(int level);

  /// Adds a piece to the current message and flushes it to the screen; a null text shows as
  /// "(null)". Floating-point values differ: the file has printf's "%f" ("%LG" for long double),
  /// the screen six significant digits.
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

  /// Writes a whole message of any length, adds the line end and flushes both sides. On the screen
  /// WARNING is underlined, EXCEPTION bold and ALARM inverse.
  void printf_line(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

  /// Sets the program's default log file name (may be empty), the word of the line heads and the
  /// thresholds.
  void configure(const char* name, const char* prefix_word, int screen_level, int file_level);

  /// Closes the current file and opens `path` for appending. On failure says so on the screen and
  /// returns false; the log then has only the screen.
  bool open_file(const char* path, const char* prefix_word, int screen_level, int file_level);

  /// Moves the log to its final file: appends the old file to `path` and removes the old file. An
  /// old file that can't be copied stays, and the screen says so. Does nothing if both are the same
  /// file. Ends the process with exit status 255 if `path` can't be opened.
  void change_file(const char* path);

  /// Set a threshold; NO_LEVEL shows nothing.
  void set_screen_level(int level);
  void set_file_level(int level);
  /// The same by name: true for one of the eight long names; otherwise the threshold stays.
  bool set_screen_level(const char* name);
  bool set_file_level(const char* name);

  /// Whether a message of level QA_WARNING has begun since the last `open_file`, shown or not.
  bool qa_warning_seen() const { return qa_flag; }
  const std::string& get_configured_name() const { return configured_name; }
  const std::string& get_file_path() const { return file_path; }

  /// Logs program, build, present time, host, starter (variable PROC_NAME) and configuration file
  /// at level INFO, and the full version at DEBUG.
  void banner(const BANNER_INFO& info);
  /// Logs a shorter head for a part of a run: title, present time and host at level INFO.
  void start_banner(const char* title);
  /// Logs the execution time since the construction of the log or the last `open_file`, and the end
  /// time, at level INFO. A message in pieces keeps its level.
  void end_banner();

  /// Hands the file's buffer to the system. False if there is no file, or if any write since its
  /// opening failed.
  bool flush();

  /// Where the lines go, for the handler of fatal signals.
  LOG_OUTLETS& Outlets() { return outlets; }

  /// Keeps the text of messages that reach the screen, without heads and line ends, in
  /// `captured()`. Of a `printf_line` it keeps the first CAPTURE_LIMIT characters.
  void set_capture(bool on) { capture = on; }
  bool is_capturing() const { return capture; }
  static constexpr int CAPTURE_LIMIT = 1029;
  const std::list<std::string>& captured() const { return captured_lines; }
  const std::string& last_captured_line() const { return last_line; }
  /// Adds text to the captured lines; a text that ends in "\n" completes a line.
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
  /// Says on the screen if the file lacks lines.
  void CloseFile();
  /// Writes a line that only the screen can take.
  void ScreenFailure(const char* text, const std::string& name);

  int lowest_level = DEBUG;  ///< the lower threshold; the log formats nothing below it
  int current_level = TRACE;
  std::string prefix;
  std::string configured_name;
  std::string file_path;
  std::time_t start_time = 0;
  bool qa_flag = false;
  bool capture = false;
  std::string pending_line;
  std::string last_line;
  std::list<std::string> captured_lines;
  std::mutex mutex;
  char scratch[CAPTURE_LIMIT + 1];  ///< the text of a line
  LOG_OUTLETS outlets;              ///< last: most pages of their buffers are never touched
};

static const STATIC_OBJECT<LOG> log_user;
/// The log of the process.
inline LOG& GlobalLog = STATIC_OBJECT<LOG>::Get();

}  // namespace varnoth
