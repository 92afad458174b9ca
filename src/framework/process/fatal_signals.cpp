#include "framework/process/fatal_signals.hpp"

#include <csignal>
#include <cstdlib>

#include "framework/log/log.hpp"
#include "framework/process/controller_ifc.hpp"

namespace varnoth {

namespace {

// The words are what supervisors look for; they stay even where today's system means another thing.
constexpr const char* TEXTS[31] = {
    "hangup",
    "interrupt (rubout)",
    "quit (ASCII FS)",
    "illegal instruction (not reset when caught)",
    "trace trap (not reset when caught)",
    "IOT instruction",
    "bus error",
    "floating point exception",
    "kill (cannot be caught or ignored)",
    "user defined signal 1",
    "segmentation violation",
    "user defined signal 2",
    "write on a pipe with no one to read it",
    "alarm clock",
    "software termination signal from kill",
    nullptr,
    "child status change",
    "stopped process has been continued",
    "stop (cannot be caught or ignored)",
    "user stop requested from tty",
    "background tty read attempted",
    "background tty write attempted",
    "urgent socket condition",
    "exceeded cpu limit",
    "exceeded file size limit",
    "virtual timer expired",
    "profiling timer expired",
    "window size change",
    "pollable event occurred",
    "power-fail restart",
    "bad argument to system call",
};

constexpr int CAUGHT[] = {SIGHUP, SIGINT,  SIGQUIT, SIGILL,  SIGABRT, SIGABRT, SIGFPE,
                          SIGBUS, SIGSEGV, SIGSYS,  SIGTERM, SIGURG,  SIGXCPU, SIGXFSZ};

CONTROLLER_IFC* controller_in_use = nullptr;

/// Text of a signal number; empty for one without a text.
const char* SignalText(int number) {
  const char* const text = number >= 1 && number <= 31 ? TEXTS[number - 1] : nullptr;
  return text != nullptr ? text : "";
}

void HandleFatalSignal(int number) {
  const char* const text = SignalText(number);
  GlobalLog.set(ALARM) << "got fatal signal " << number << ": " << text << "\n";
  if (controller_in_use == nullptr) std::exit(-1);
  if (controller_in_use->is_supervised()) {
    GlobalLog.set(ALARM) << "ZOD_MSG|ERROR|" << controller_in_use->get_base_name().c_str()
                         << " got fatal signal " << number << ": " << text << "\n";
  }
  controller_in_use->exit_error();
}

}  // namespace

void install_signal_handlers(CONTROLLER_IFC* controller) {
  controller_in_use = controller;
  for (const int number : CAUGHT) std::signal(number, HandleFatalSignal);
}

}  // namespace varnoth
