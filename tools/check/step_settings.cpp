#include "tools/check/step_settings.hpp"

#include <fcntl.h>
#include <libgen.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>

#include "log/log.hpp"
#include "system/file_access.hpp"
#include "system/floating_point_traps.hpp"
#include "system/signal_safe/status_marks.hpp"

namespace varnoth::tools {

namespace {

/// The name under which the step runs, where no parameter gives another one.
constexpr const char* STEP_NAME = "varnoth";

/// The lookups of a run. As the step does, a search in the file goes on where the last one ended.
class SETTINGS_SEARCH {
 public:
  explicit SETTINGS_SEARCH(const std::vector<std::string>& words) : arguments(words) {}

  SETTING Find(const std::string& key) {
    SETTING found = FindArgument(key);
    if (found.is_given) return found;
    const auto has_key = [&](const SETTING& row) { return row.key == key; };
    auto row = std::find_if(rows.begin() + next, rows.end(), has_key);
    if (row == rows.end()) row = std::find_if(rows.begin(), rows.end(), has_key);
    next = row == rows.end() ? 0 : row - rows.begin() + 1;
    return row != rows.end() ? *row : FindVariable(key);
  }

  /// The lookup of the one key that the step looks for from the file's first line.
  SETTING FindFromTop(const std::string& key) {
    const auto kept = next;
    next = 0;
    SETTING found = Find(key);
    next = kept;
    return found;
  }

  /// Reads the file as the step does, 1023 bytes of a line at most. Why it can't be read, or
  /// nothing; a file that is missing is none.
  std::string ReadFile(const std::string& name) {
    const OWNED_FILE file = OpenStream(name.c_str(), O_RDONLY);
    if (file == nullptr) {
      return errno == ENOENT || errno == ENOTDIR ? "" : std::strerror(errno);
    }
    char line[1024];
    std::size_t number = 1;
    while (std::fgets(line, sizeof line, file.get()) != nullptr) {
      char key[sizeof line] = "";
      char value[sizeof line] = "";
      std::sscanf(line, "%1023s %1023s", key, value);  // NOLINT(cert-err34-c): words, no numbers
      rows.push_back({key, value, name, number, true});
      if (std::strchr(line, '\n') != nullptr) ++number;
    }
    if (std::ferror(file.get()) != 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) {
      return std::strerror(errno);
    }
    return "";
  }

  const std::vector<SETTING>& Rows() const { return rows; }

 private:
  SETTING FindArgument(const std::string& key) const {
    for (std::size_t i = arguments.size(); i-- > 1;) {
      if (arguments[i - 1] == "-" + key) return {key, arguments[i], "", 0, true};
    }
    return {key, "", "", 0, false};
  }
  static SETTING FindVariable(const std::string& key) {
    const char* const value = std::getenv(key.c_str());
    return {key, value != nullptr ? value : "", "", 0, value != nullptr};
  }

  const std::vector<std::string>& arguments;
  std::vector<SETTING> rows;
  std::ptrdiff_t next = 0;
};

/// Reads the settings one by one and tells what is wrong with each.
class SETTINGS_READER {
 public:
  SETTINGS_READER(const std::vector<std::string>& arguments, FINDING_LIST& list)
      : search(arguments), findings(list) {}

  STEP_SETTINGS Read() {
    SETTING name = search.Find("pid");
    if (!name.is_given) name.value = STEP_NAME;
    Bound(name, name.value);
    SETTING status = search.Find("status");
    if (!status.value.empty() && status.value.back() != '/') status.value += '/';
    for (const char* const mark : {"STOP.", "ERROR.", "OK."}) {
      if (!Bound(status, status.value + mark + name.value)) break;
    }
    SETTING file = search.Find("pcf");
    if (!file.is_given) file.value = "pcf." + name.value;
    Bound(file, file.value);
    if (const std::string reason = search.ReadFile(file.value); !reason.empty()) {
      Error(file, "configuration-unreadable",
            "can't read the configuration file " + file.value + ": " + reason,
            "correct its rights, or its name");
    }
    CheckRows();
    CheckFilesOfRun(name, status);
    CheckLevels();
    STEP_SETTINGS settings = ReadValues();
    settings.configuration_file = file.value;
    return settings;
  }

 private:
  void Add(SEVERITY level, const SETTING& setting, const std::string& code,
           const std::string& message, const std::string& remedy) {
    findings.push_back({.level = level,
                        .code = code,
                        .file = setting.file,
                        .line = setting.line,
                        .key = setting.key,
                        .message = message,
                        .remedy = remedy});
  }
  void Error(const SETTING& setting, const std::string& code, const std::string& message,
             const std::string& remedy) {
    Add(SEVERITY::ERROR, setting, code, message, remedy);
  }
  void Warn(const SETTING& setting, const std::string& code, const std::string& message,
            const std::string& remedy) {
    Add(SEVERITY::WARNING, setting, code, message, remedy);
  }

  bool Bound(const SETTING& setting, const std::string& text) {
    if (text.size() <= PATH_LIMIT) return true;
    Error(setting, "value-too-long",
          std::to_string(text.size()) + " characters, more than " + std::to_string(PATH_LIMIT),
          "shorten it, for instance with a link");
    return false;
  }

  void CheckRows() {
    static const std::set<std::string> KEYS = {
        "FlatEarthPolyDegree", "MasterPar",     "SlavePar", "ParameterPool", "log_pp",
        "LocalHeight",         "DurableUpdate", "lfn",      "lfl",           "lsl"};
    std::set<std::string> seen;
    for (const SETTING& row : search.Rows()) {
      if (KEYS.contains(row.key) && !seen.insert(row.key).second) {
        Warn(row, "key-twice", "stands twice, and each search gives the next of its values",
             "write every key once");
      }
    }
  }

  void CheckFilesOfRun(const SETTING& name, const SETTING& status) {
    const std::string stop = status.value + "STOP." + name.value;
    if (access(stop.c_str(), R_OK) == 0) {
      Error(status, "stop-file", "the STOP file " + stop + " stands, the run would end with 2",
            "remove it when its reason is gone");
    }
    if (const std::string reason = WhyNotWritable(status.value + "OK." + name.value);
        !reason.empty()) {
      Warn(status, "mark-unwritable", "the run can't write its marks: " + reason,
           "give a directory that exists and can be written");
    }
    SETTING log = search.Find("lfn");
    if (!log.is_given) log.value = "log." + name.value;
    Bound(log, log.value);
    if (const std::string reason = WhyNotWritable(log.value); !reason.empty()) {
      Error(log, "log-unwritable", "can't open the log file " + log.value + ": " + reason,
            "correct the directory, or lfn");
    }
    for (const char* const file : {"current_process.pid", "parent_process.pid"}) {
      // The step replaces a link, and a file with other names, by a file of its own.
      struct stat found {};
      const bool is_own = lstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_nlink == 1;
      const bool is_free = S_ISDIR(found.st_mode) ? false : WhyNoneBeside(file).empty();
      if (is_own ? WhyNotWritable(file).empty() : is_free) continue;
      Error({}, "directory-unwritable", std::string("can't write ") + file,
            "start the run in a directory that can be written");
      break;
    }
  }

  void CheckLevels() {
    for (const char* const key : {"lfl", "lsl"}) {
      const SETTING level = search.Find(key);
      if (level.is_given && LogLevelFromName(level.value.c_str()) == NO_LEVEL) {
        Warn(level, "level-unknown", "'" + level.value + "' is no level and silences its channel",
             "use a level name, for instance INFO");
      }
    }
  }

  STEP_SETTINGS ReadValues() {
    STEP_SETTINGS settings;
    settings.degree = Need("FlatEarthPolyDegree");
    settings.master = Need("MasterPar");
    settings.slave = Need("SlavePar");
    settings.insar = Need("ParameterPool");
    settings.log_pool = Need("log_pp");
    const SETTING durable = search.FindFromTop("DurableUpdate");
    if (durable.is_given && durable.value != "TRUE" && durable.value != "FALSE") {
      Error(durable, "value-unknown", "'" + durable.value + "' is neither TRUE nor FALSE",
            "write TRUE or FALSE");
    }
    settings.height = search.Find("LocalHeight");
    if (settings.height.is_given) {
      settings.height = search.Find("LocalHeight");  // the step looks for it, then reads it
      Bound(settings.height, settings.height.value);
      CheckHeight(settings.height);
    }
    if (settings.degree.is_given) CheckDegree(settings.degree);
    return settings;
  }

  SETTING Need(const char* key) {
    SETTING setting = search.Find(key);
    Bound(setting, setting.value);
    if (setting.is_given) return setting;
    if (std::strcmp(key, "FlatEarthPolyDegree") == 0 && isatty(STDIN_FILENO) == 0) {
      Warn(setting, "value-missing", "the run asks at the keyboard, and counts no answer as 0",
           "give the degree as an argument");
    } else {
      Error(
          setting, "value-missing", "no value: the run would ask at the keyboard",
          std::string("give -") + key + " as an argument, or write it into the configuration file");
    }
    return setting;
  }

  void CheckDegree(const SETTING& setting) {
    constexpr long POINTS = 11;  // of a line of the sweep
    char* end = nullptr;
    const long degree = std::strtol(setting.value.c_str(), &end, 10);
    if (end == setting.value.c_str() || *end != '\0') {
      Warn(setting, "degree-no-number",
           "'" + setting.value + "' is no whole number and counts as " + std::to_string(degree),
           "write a whole number");
    }
    if (degree < 0) {
      Error(setting, "degree-negative", "a polynomial has no degree " + std::to_string(degree),
            "give 0 or more, for instance 4");
    } else if (degree >= POINTS) {
      findings.push_back({.level = SEVERITY::WARNING,
                          .code = "degree-high",
                          .file = setting.file,
                          .line = setting.line,
                          .key = setting.key,
                          .message = "degree " + std::to_string(degree) + " through " +
                                     std::to_string(POINTS) +
                                     " points: the coefficients mean "
                                     "nothing",
                          .remedy = "use 10 or less, for instance 4",
                          .is_cause = true});
    }
  }

  void CheckHeight(const SETTING& setting) {
    char* end = nullptr;
    double height = 0.0;
    {
      const HELD_TRAPS held;
      height = std::strtod(setting.value.c_str(), &end);
    }
    if (end == setting.value.c_str() || *end != '\0' || !std::isfinite(height)) {
      findings.push_back({.level = SEVERITY::WARNING,
                          .code = "height-no-number",
                          .file = setting.file,
                          .line = setting.line,
                          .key = setting.key,
                          .message = "'" + setting.value + "' counts as " + Short(height) + " m",
                          .remedy = "write a number with a point",
                          .is_cause = true});
    }
  }

  SETTINGS_SEARCH search;
  FINDING_LIST& findings;
};

}  // namespace

STEP_SETTINGS FindSettings(const std::vector<std::string>& arguments, FINDING_LIST& findings) {
  return SETTINGS_READER(arguments, findings).Read();
}

std::string WhyNoneBeside(const std::string& path) {
  std::string copy = path;
  const char* const directory = dirname(copy.data());  // it changes its argument
  if (faccessat(AT_FDCWD, directory, W_OK | X_OK, AT_EACCESS) == 0) {
    struct stat status {};
    if (stat(directory, &status) == 0 && S_ISDIR(status.st_mode)) return "";
    errno = ENOTDIR;
  }
  return std::string(directory) + ": " + std::strerror(errno);
}

std::string WhyNotWritable(const std::string& path) {
  struct stat status {};
  if (path.empty()) return std::strerror(ENOENT);
  if (stat(path.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return std::strerror(EISDIR);
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 ? "" : std::strerror(errno);
  }
  if (errno != ENOENT) return std::strerror(errno);
  if (path.back() == '/') return std::strerror(EISDIR);
  // A link that leads nowhere: the file comes to be at its end.
  std::error_code error;
  const std::filesystem::path target = std::filesystem::read_symlink(path, error);
  if (error) return WhyNoneBeside(path);
  return WhyNotWritable(std::filesystem::path(path).parent_path() / target);
}

}  // namespace varnoth::tools
