#pragma once

#include "foundation/string.hpp"
#include "system/owned_file.hpp"
#include "system/signal_safe/fatal_exit.hpp"

namespace varnoth {

/// The process's contact with its starter, a supervisor or a person at a terminal. It finds the
/// configuration, writes the status files that show how the run ended, obeys a STOP file, and ends
/// the process on its regular paths. The main function owns the one object:
///
///     CONTROLLER_IFC controller;
///     controller.init(argc, argv, true);
///     STRING pool;
///     controller.get_parameter("ParameterPool", pool);
///     controller.exit_ok();
///
/// A lookup searches the argument list ("-key value", the last pair wins), then the configuration
/// file (a line per key: key, blank, value), then the environment, and for a mandatory parameter
/// asks at the keyboard. A value from the file or the keyboard is one word. Every lookup throws
/// ERROR_CAN_NOT_READ_FILE, after a line at ALARM, if it can't read the file.
///
/// The failure mark stands from `init` until the regular end, so that a run that dies in any way
/// counts as failed. A mark that can't be written or removed leaves a line at WARNING, no more.
class CONTROLLER_IFC {
 public:
  CONTROLLER_IFC() = default;
  CONTROLLER_IFC(const CONTROLLER_IFC&) = delete;
  CONTROLLER_IFC& operator=(const CONTROLLER_IFC&) = delete;

  /// Sets the process up: signal handlers, names, configuration file, log file and levels, marks.
  /// With `supervise` the fatal-signal handler also writes the supervisor's line. The arguments
  /// must outlive the object. A missing configuration file leaves a line at WARNING.
  ///
  /// Ends the process with status 2 if the STOP file exists, and with 255 if the log file can't be
  /// opened. Throws, after a line at ALARM, ERROR_ARGUMENT for a name or path of more than 255
  /// characters, and ERROR_CAN_NOT_READ_FILE for an existing configuration file that can't be
  /// read.
  void init(int count, char** arguments, bool supervise);

  /// Finds a mandatory parameter, or asks for it at the keyboard; returns true. If the keyboard is
  /// closed, the value stays as it was. No answer within SECONDS_ON_PARAMETER_INPUT seconds (an
  /// environment variable; 120 without it, 0 waits for ever) ends the process by the alarm signal.
  bool get_parameter(const char* key, STRING& value);
  /// Finds an optional parameter; false, with the value unchanged, if there is none.
  bool find_parameter(const char* key, STRING& value);
  /// Whether `find_parameter` finds a value.
  bool has_parameter(const char* key);
  /// Like `find_parameter`, but logs nothing except a failure, and does not move the place where
  /// the next search in the configuration file begins.
  bool find_quietly(const char* key, STRING& value) const;

  /// The name that the names of status and default files contain. Before `init` "unknown", with two
  /// lines at WARNING.
  const STRING& get_binary_name();
  /// Last component of the program's path.
  const STRING& get_base_name() const { return base_name; }
  const STRING& get_config_file_name() const { return config_file_name; }

  /// Sets the success mark and ends the process with status 0.
  [[noreturn]] void exit_ok();
  /// Sets the failure mark and ends the process with status 1.
  [[noreturn]] void exit_error();
  /// Set the mark and close the configuration file, but do not end the process; return the status.
  int mark_ok();
  int mark_error();
  /// Removes the success mark and writes the failure mark.
  void set_failure_mark();
  /// Waits until the disk holds the marks, now and after each later change. A failure leaves a line
  /// at WARNING.
  void SetDurable();
  /// Removes the failure mark.
  void remove_error_file();
  /// Closes the configuration file, if it is open; later lookups skip it.
  void close_config() { config_file.reset(); }

  /// Makes the fatal-signal handler write the supervisor's line too.
  void set_supervised();
  bool is_supervised() const { return supervised; }
  /// What the fatal-signal handler needs, as far as it is known.
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
  STRING status_path;  ///< ends in "/", or is empty
  OWNED_FILE config_file;
  STRING ok_file;
  STRING stop_file;
  STRING error_file;
  STRING config_file_name;
  bool supervised = false;
  bool is_durable = false;
};

}  // namespace varnoth
