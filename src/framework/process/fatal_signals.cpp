#include "framework/process/fatal_signals.hpp"

#include <unistd.h>

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

/// The log's lines, and the exit behind them, need more than a minimal stack.
constexpr std::size_t STACK_SIZE = 65536;
alignas(16) char alternate_stack[STACK_SIZE];

/// Ends the process in a second, by the default action of the alarm, if the handler does not: the
/// signal may have interrupted the allocator, whose lock then never opens, or the screen may be a
/// pipe that nobody reads.
void GuardAgainstHanging() {
  std::signal(SIGALRM, SIG_DFL);
  sigset_t alarm_alone;
  sigemptyset(&alarm_alone);
  sigaddset(&alarm_alone, SIGALRM);
  sigprocmask(SIG_UNBLOCK, &alarm_alone, nullptr);
  alarm(1);
}

void HandleFatalSignal(int number) {
  GuardAgainstHanging();
  // Ahead of the lines, which may not come to their end.
  if (controller_in_use != nullptr) controller_in_use->set_failure_mark();
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

HELD_SIGNALS::HELD_SIGNALS() {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &former);
}

void install_signal_handlers(CONTROLLER_IFC* controller) {
  controller_in_use = controller;
  // A stack that has overflown takes no handler.
  stack_t stack{};
  stack.ss_sp = alternate_stack;
  stack.ss_size = STACK_SIZE;
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_handler = HandleFatalSignal;
  action.sa_flags = SA_RESTART | SA_ONSTACK;
  // One death at a time: what else arrives must not tell of itself in the middle of a line. A fault
  // of the handler's own ends the process at once.
  sigfillset(&action.sa_mask);
  for (const int number : CAUGHT) sigaction(number, &action, nullptr);
}

}  // namespace varnoth
