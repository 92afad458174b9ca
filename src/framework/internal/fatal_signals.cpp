#include "framework/internal/fatal_signals.hpp"

#include <cstddef>

#include "framework/controller_ifc.hpp"
#include "log/log.hpp"
#include "system/signal_safe/fatal_exit.hpp"

namespace varnoth {

namespace {

constexpr int CAUGHT[] = {SIGHUP,  SIGINT, SIGQUIT, SIGILL, SIGABRT, SIGFPE, SIGBUS,
                          SIGSEGV, SIGSYS, SIGTERM, SIGURG, SIGXCPU, SIGXFSZ};

/// The handler needs a stack of its own: after a stack overflow the usual one has no room.
constexpr std::size_t STACK_SIZE = 65536;
alignas(16) char alternate_stack[STACK_SIZE];

}  // namespace

HELD_SIGNALS::HELD_SIGNALS() {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &former);
}

void install_signal_handlers(const CONTROLLER_IFC* controller) {
  PlanFatalExit(controller != nullptr ? controller->fatal_exit_plan()
                                      : FATAL_EXIT_PLAN{.log = &GlobalLog.Outlets()});
  stack_t stack{};
  stack.ss_sp = alternate_stack;
  stack.ss_size = STACK_SIZE;
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_sigaction = HandleFatalSignal;
  action.sa_flags = SA_RESTART | SA_ONSTACK | SA_SIGINFO;
  // One signal at a time: a second one must not write into the middle of a line. A fault of the
  // handler itself ends the process at once.
  sigfillset(&action.sa_mask);
  for (const int number : CAUGHT) sigaction(number, &action, nullptr);
}

}  // namespace varnoth
