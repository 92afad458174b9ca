#include "framework/controller_ifc.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "foundation/errors.hpp"
#include "framework/internal/fatal_signals.hpp"
#include "log/log.hpp"
#include "system/file_access.hpp"
#include "system/signal_safe/descriptor.hpp"
#include "system/signal_safe/uninterrupted.hpp"

namespace varnoth {

namespace {

constexpr int DEFAULT_INPUT_SECONDS = 120;

/// The text, if it is within the limit of all file names of a run.
STRING Bounded(const char* what, const STRING& text) {
  if (text.Length() > PATH_LIMIT) {
    GlobalLog.set(ALARM) << what << " is longer than " << PATH_LIMIT << " characters: " << text
                         << "\n";
    throw ERROR_ARGUMENT();
  }
  return text;
}

void TellOfFaults(const MARK_FAULTS& faults, const STRING& old_mark, const STRING& new_mark) {
  if (faults.is_missing) GlobalLog.set(WARNING) << "Can not create file " << new_mark << "!\n";
  if (faults.is_left) GlobalLog.set(WARNING) << "Can not remove file " << old_mark << "!\n";
}

/// Copies a name into a fixed buffer; the name is within the limit already.
void Copy(const STRING& name, char (&buffer)[PATH_LIMIT + 1]) {
  std::memcpy(buffer, name.c_str(), name.Length() + 1);
}

/// Reads on to the next line whose first word is the key, and returns its second word in `value`.
bool ReadOnTo(const char* key, std::FILE* file, STRING& value) {
  char line[1024];
  char name[sizeof line];
  char word[sizeof line];
  while (std::fgets(line, sizeof line, file) != nullptr) {
    name[0] = '\0';
    word[0] = '\0';
    std::sscanf(line, "%1023s %1023s", name, word);  // NOLINT(cert-err34-c): words, no numbers
    if (std::strcmp(name, key) != 0) continue;
    value = word;
    return true;
  }
  return false;
}

/// One word from standard input, up to a limit; the code that uses the value refuses longer ones.
std::string ReadWord() {
  constexpr std::size_t WORD_LIMIT = 4096;
  std::string word;
  int c = std::getchar();
  while (c != EOF && std::isspace(c) != 0) c = std::getchar();
  for (; c != EOF && std::isspace(c) == 0 && word.size() < WORD_LIMIT; c = std::getchar()) {
    word += static_cast<char>(c);
  }
  return word;
}

}  // namespace

void CONTROLLER_IFC::init(int count, char** arguments, bool supervise) {
  supervised = supervise;
  {
    // A signal in between could set no mark: the marks have no names yet.
    const HELD_SIGNALS held;
    install_signal_handlers(this);
    argc = count;
    argv = arguments;
    ReadNames();
  }
  config_file = OpenStream(config_file_name.c_str(), O_RDONLY);
  const int reason = config_file == nullptr ? errno : 0;
  MoveLog();
  if (config_file == nullptr) {
    // Without the keys of an existing file the run would go on with other values.
    if (reason != ENOENT && reason != ENOTDIR) FailOnConfigFile(reason);
    GlobalLog.set(WARNING) << "Configuration file " << config_file_name << " does not exist!\n";
  }
  ReadLogLevels();
  ObeyStopFile();
  set_failure_mark();
}

void CONTROLLER_IFC::FailOnConfigFile(int reason) const {
  GlobalLog.set(ALARM) << "Can not read configuration file " << config_file_name << ": "
                       << std::strerror(reason) << "\n";
  throw ERROR_CAN_NOT_READ_FILE();
}

void CONTROLLER_IFC::ReadNames() {
  const char* const program = argc > 0 ? argv[0] : "";
  const char* const slash = std::strrchr(program, '/');
  base_name = Bounded("name of the program", slash != nullptr ? slash + 1 : program);
  binary_name = base_name;
  FormMarks();
  if (STRING pid; find_parameter("pid", pid)) binary_name = Bounded("parameter pid", pid);
  GlobalLog.set(TRACE) << "binary name is " << binary_name << "\n";

  if (STRING path; find_parameter("status", path) && !path.IsEmpty()) {
    if (path[path.Length() - 1] != '/') path += "/";
    status_path = Bounded("parameter status", path);
  }
  GlobalLog.set(TRACE) << "status path is [" << status_path << "]\n";
  FormMarks();

  if (!find_parameter("pcf", config_file_name)) config_file_name = STRING("pcf.") + binary_name;
  config_file_name = Bounded("name of the configuration file", config_file_name);
}

// Called as soon as a name is known, so that a refusal of a later name still sets a failure mark.
void CONTROLLER_IFC::FormMarks() {
  const STRING stop = Bounded("path of the STOP file", status_path + "STOP." + binary_name);
  const STRING error = Bounded("path of the failure mark", status_path + "ERROR." + binary_name);
  ok_file = Bounded("path of the success mark", status_path + "OK." + binary_name);
  stop_file = stop;
  error_file = error;
  PlanFatalExit(fatal_exit_plan());
}

FATAL_EXIT_PLAN CONTROLLER_IFC::fatal_exit_plan() const {
  FATAL_EXIT_PLAN plan{
      .log = &GlobalLog.Outlets(), .has_controller = true, .is_supervised = supervised};
  Copy(base_name, plan.program);
  Copy(ok_file, plan.ok_mark);
  Copy(error_file, plan.error_mark);
  return plan;
}

void CONTROLLER_IFC::set_supervised() {
  supervised = true;
  PlanFatalExit(fatal_exit_plan());
}

void CONTROLLER_IFC::MoveLog() {
  STRING name;
  if (!find_parameter("lfn", name)) {
    const std::string& configured = GlobalLog.get_configured_name();
    name = !configured.empty() && !has_parameter("pid") ? STRING(configured.c_str())
                                                        : STRING("log.") + binary_name;
  }
  GlobalLog.change_file(Bounded("name of the log file", name).c_str());
}

void CONTROLLER_IFC::ReadLogLevels() {
  STRING level;
  if (find_parameter("lfl", level)) GlobalLog.set_file_level(int{LogLevelFromName(level.c_str())});
  if (find_parameter("lsl", level)) {
    GlobalLog.set_screen_level(int{LogLevelFromName(level.c_str())});
  }
}

void CONTROLLER_IFC::ObeyStopFile() const {
  if (OpenDescriptor(stop_file.c_str(), O_RDONLY) < 0) return;  // a pipe is a STOP file as well
  constexpr const char* LINE = "====================================================\n";
  GlobalLog.set(INFO) << LINE;
  GlobalLog.set(INFO) << "Program execution interrupted - STOP file was found!\n";
  GlobalLog.set(INFO) << LINE;
  GlobalLog.set(INFO) << "found file: " << stop_file << "\n";
  std::exit(2);
}

const char* CONTROLLER_IFC::ArgumentOf(const char* key) const {
  for (int i = argc - 2; i >= 1; --i) {
    if (argv[i][0] == '-' && std::strcmp(argv[i] + 1, key) == 0) return argv[i + 1];
  }
  return nullptr;
}

bool CONTROLLER_IFC::FindInArguments(const char* key, STRING& value) const {
  const char* const found = ArgumentOf(key);
  if (found == nullptr) {
    GlobalLog.set(TRACE) << "Parameter " << key << " not found in argument list!\n";
    return false;
  }
  value = found;
  GlobalLog.set(DEBUG) << "Found parameter in argument list " << key << " = " << value << "\n";
  return true;
}

// A search starts where the last one stopped, so that lookups in the file's own order take one pass
// in all.
bool CONTROLLER_IFC::FindInConfigFile(const char* key, STRING& value) {
  if (config_file == nullptr) return false;
  for (int rewinds = 0; rewinds < 2; ++rewinds) {
    if (ReadOnTo(key, config_file.get(), value)) {
      GlobalLog.set(DEBUG) << "Found parameter " << key << "=" << value << "\n";
      return true;
    }
    if (std::ferror(config_file.get()) != 0) FailOnConfigFile(errno);
    GlobalLog.set(TRACE) << "rewinding file position\n";
    if (std::fseek(config_file.get(), 0, SEEK_SET) != 0) FailOnConfigFile(errno);
  }
  return false;
}

bool CONTROLLER_IFC::FindInEnvironment(const char* key, STRING& value) {
  const char* const found = std::getenv(key);
  if (found == nullptr) {
    GlobalLog.set(TRACE) << "parameter " << key << " not found in UNIX environment\n";
    return false;
  }
  value = found;
  GlobalLog.set(DEBUG) << "Found parameter in UNIX environment " << key << "=" << value << "\n";
  return true;
}

void CONTROLLER_IFC::AskKeyboard(const char* key, STRING& value) {
  GlobalLog.set(WARNING) << "No configuration file or parameter not found!\n";
  GlobalLog.set(WARNING) << "\t  Please input value of parameter : <" << key << ">\n";
  const char* const wanted = std::getenv("SECONDS_ON_PARAMETER_INPUT");
  long seconds = wanted != nullptr ? std::strtol(wanted, nullptr, 10) : DEFAULT_INPUT_SECONDS;
  if (seconds < 0 || seconds > 0x7FFFFFFF) seconds = DEFAULT_INPUT_SECONDS;
  GlobalLog.set(DEBUG) << "waiting " << seconds << " seconds for input\n";
  GlobalLog.flush();  // a time-out ends the process without a flush
  alarm(static_cast<unsigned>(seconds));
  std::printf("%s := ", key);
  std::fflush(stdout);
  const std::string word = ReadWord();
  alarm(0);
  if (!word.empty()) value = word.c_str();
  GlobalLog.set(DEBUG) << "Read from keyboard parameter " << key << " = " << value << "\n";
}

bool CONTROLLER_IFC::find_parameter(const char* key, STRING& value) {
  return FindInArguments(key, value) || FindInConfigFile(key, value) ||
         FindInEnvironment(key, value);
}

bool CONTROLLER_IFC::get_parameter(const char* key, STRING& value) {
  if (!find_parameter(key, value)) AskKeyboard(key, value);
  return true;
}

bool CONTROLLER_IFC::has_parameter(const char* key) {
  STRING scratch;
  return find_parameter(key, scratch);
}

bool CONTROLLER_IFC::find_quietly(const char* key, STRING& value) const {
  const char* found = ArgumentOf(key);
  if (found == nullptr && config_file != nullptr) {
    const OWNED_FILE file = OpenStream(config_file_name.c_str(), O_RDONLY);
    if (file != nullptr && ReadOnTo(key, file.get(), value)) return true;
    if (file == nullptr || std::ferror(file.get()) != 0) FailOnConfigFile(errno);
  }
  if (found == nullptr) found = std::getenv(key);
  if (found != nullptr) value = found;
  return found != nullptr;
}

const STRING& CONTROLLER_IFC::get_binary_name() {
  if (binary_name.IsEmpty()) {
    GlobalLog.set(WARNING)
        << "CONTROLLER_IFC::get_binary_name: Controller interface not initialized!\n";
    GlobalLog.set(WARNING) << "Function CONTROLLER_IFC::init must be called before accessing a "
                              "controller object!";
    binary_name = "unknown";
  }
  return binary_name;
}

int CONTROLLER_IFC::mark_ok() {
  close_config();
  remove_error_file();
  TellOfFaults(ChangeMarks("", ok_file.c_str(), 0), "", ok_file);
  SyncMarks();
  return 0;
}

int CONTROLLER_IFC::mark_error() {
  close_config();
  set_failure_mark();
  return 1;
}

void CONTROLLER_IFC::set_failure_mark() {
  TellOfFaults(ChangeMarks(ok_file.c_str(), error_file.c_str(), 1), ok_file, error_file);
  SyncMarks();
}

void CONTROLLER_IFC::SetDurable() {
  is_durable = true;
  SyncMarks();
}

void CONTROLLER_IFC::SyncMarks() const {
  if (!is_durable || SyncName(error_file.c_str())) return;
  GlobalLog.set(WARNING) << "Can not wait for the disk to hold the marks: " << std::strerror(errno)
                         << "\n";
}

void CONTROLLER_IFC::exit_ok() {
  {
    // A signal after the success mark must not remove it.
    const UNINTERRUPTED whole;
    EndWell();
    mark_ok();
  }
  std::exit(0);
}

void CONTROLLER_IFC::exit_error() { std::exit(mark_error()); }

void CONTROLLER_IFC::remove_error_file() {
  TellOfFaults(ChangeMarks(error_file.c_str(), "", 0), error_file, "");
}

}  // namespace varnoth
