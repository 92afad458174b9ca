#pragma once

#include "foundation/string.hpp"
#include "system/owned_file.hpp"
#include "system/signal_safe/fatal_exit.hpp"

namespace varnoth {

/// The process's contact with whatever started it, a supervisor or a person at a terminal: it finds
/// the configuration, places the status files that tell how the run ended, obeys a STOP file, and
/// ends the process on its regular paths. The main function owns the one object.
///
/// A parameter is looked for in the argument list ("-key value", the last pair wins), in the
/// configuration file, in the environment and, if it is mandatory, at the keyboard.
///
/// From `init` until the regular end the failure mark stands, so that a run that dies in any way is
/// reported as failed.
class CONTROLLER_IFC {
 public:
  CONTROLLER_IFC() = default;
  CONTROLLER_IFC(const CONTROLLER_IFC&) = delete;
  CONTROLLER_IFC& operator=(const CONTROLLER_IFC&) = delete;

  /// Sets the process up: signal handlers, names, configuration file, log file and levels, marks.
  /// With `supervise` the fatal-signal handler also writes the supervisor's line. The arguments
  /// must outlive the object.
  ///
  /// Ends the process with status 2 if the STOP file is there, and with 255 if the log file can't
  /// be opened. Throws, behind a line at ALARM, ERROR_ARGUMENT for a path of more than 255
  /// characters, and ERROR_CAN_NOT_READ_FILE for a configuration file that is there but can't be
  /// read, as every later look into it does.
  void init(int count, char** arguments, bool supervise);

  /// Finds a mandatory parameter, at last at the keyboard, and returns true. With the keyboard
  /// closed the value stays as it was. A time-out ends the process by the alarm signal.
  bool get_parameter(const char* key, STRING& value);
  /// Finds an optional parameter; false, and the value unchanged, if there is none.
  bool find_parameter(const char* key, STRING& value);
  /// Whether a parameter is there.
  bool has_parameter(const char* key);
  /// Finds an optional parameter without a line in the log, and without a change of where the next
  /// search in the configuration file begins.
  bool find_quietly(const char* key, STRING& value) const;

  /// Name under which status and default files are formed; "unknown" before `init`.
  const STRING& get_binary_name();
  /// Last component of the program's path.
  const STRING& get_base_name() const { return base_name; }
  const STRING& get_config_file_name() const { return config_file_name; }

  /// Sets the success mark and ends the process with status 0.
  [[noreturn]] void exit_ok();
  /// Sets the failure mark and ends the process with status 1.
  [[noreturn]] void exit_error();
  /// The same without ending the process; gives that status.
  int mark_ok();
  int mark_error();
  void set_failure_mark();
  /// From now on a change of the marks waits until the disk holds it, as those that stand do when
  /// this returns.
  void SetDurable();
  void remove_error_file();
  /// Safe on a closed file.
  void close_config() { config_file.reset(); }

  void set_supervised();
  bool is_supervised() const { return supervised; }
  /// What a fatal signal has to know of the run, as far as it is known.
  FATAL_EXIT_PLAN fatal_exit_plan() const;

 private:
  const char* ArgumentOf(const char* key) const;
  bool FindInArguments(const char* key, STRING& value) const;
  bool FindInConfigFile(const char* key, STRING& value);
  [[noreturn]] void FailOnConfigFile(int reason) const;
  static bool FindInEnvironment(const char* key, STRING& value);
  static void AskKeyboard(const char* key, STRING& value);
  void ReadNames();
  void FormMarks();
  void MoveLog();
  void ReadLogLevels();
  void ObeyStopFile() const;
  void SyncMarks() const;

  int argc = 0;
  char** argv = nullptr;
  STRING binary_name;
  STRING base_name;
  STRING status_path;  ///< with a "/" at its end, or empty
  OWNED_FILE config_file;
  STRING ok_file;
  STRING stop_file;
  STRING error_file;
  STRING config_file_name;
  bool supervised = false;
  bool is_durable = false;
};

}  // namespace varnoth
