#pragma once

#include <csignal>

#include "system/signal_safe/log_outlets.hpp"
#include "system/signal_safe/status_marks.hpp"

namespace varnoth {

/// What the handler of a fatal signal has to know. Copies, none of them on the heap, which may be
/// in disorder when they are needed.
struct FATAL_EXIT_PLAN {
  LOG_OUTLETS* log = nullptr;
  bool has_controller = false;
  bool is_supervised = false;
  char program[PATH_LIMIT + 1] = {};
  char ok_mark[PATH_LIMIT + 1] = {};
  char error_mark[PATH_LIMIT + 1] = {};
};

/// Takes the plan over.
void PlanFatalExit(const FATAL_EXIT_PLAN& plan);

/// From here on the run counts as done: a signal ends it with status 0 and leaves the marks alone.
void EndWell();

/// The handler of fatal signals, to be installed with SA_SIGINFO, all signals blocked. Sets the
/// failure mark, tells the signal in the log and on the screen, and ends the process with status 1,
/// without a controller 255.
///
/// From its first instruction to the end it makes only async-signal-safe calls: no allocation, no
/// stdio, no lock, no exit handlers. An alarm ends what hangs within a second. A signal that comes
/// in addition, a fault of the handler's own included, ends the process at once.
void HandleFatalSignal(int number, siginfo_t* information, void* context);

}  // namespace varnoth
