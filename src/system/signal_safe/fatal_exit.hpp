#pragma once

#include <csignal>

#include "system/signal_safe/log_outlets.hpp"
#include "system/signal_safe/status_marks.hpp"

namespace varnoth {

/// What the handler of a fatal signal needs. All are copies outside the heap, which may be corrupt
/// by then.
///
///     FATAL_EXIT_PLAN plan{.log = &GlobalLog.Outlets(), .has_controller = true};
///     std::strcpy(plan.error_mark, "ERROR.varnoth");
///     PlanFatalExit(plan);
struct FATAL_EXIT_PLAN {
  LOG_OUTLETS* log = nullptr;            ///< set it before you install a handler
  bool has_controller = false;           ///< exit status 1 instead of 255
  bool is_supervised = false;            ///< writes the supervisor's line too
  char program[PATH_LIMIT + 1] = {};     ///< its name in the supervisor's line
  char ok_mark[PATH_LIMIT + 1] = {};     ///< path to remove; empty for none
  char error_mark[PATH_LIMIT + 1] = {};  ///< path to write; empty for none
};

/// Copies the plan for the handler; no signal sees half of it.
void PlanFatalExit(const FATAL_EXIT_PLAN& plan);

/// Makes the run count as done: from here on a fatal signal ends it with status 0, and changes no
/// mark and writes no line.
void EndWell();

/// The handler of fatal signals; install it with SA_SIGINFO and all signals blocked. Sets the
/// failure mark, writes the signal's text to the log and the screen, and ends the process with
/// status 1, or 255 without a controller. If the signal interrupts an UNINTERRUPTED stretch, the
/// lines and the end of the process wait for the end of the stretch.
///
/// It makes only async-signal-safe calls: no allocation, no stdio, no lock, no exit handlers. If
/// something hangs, an alarm ends the process within a second. A fault of the handler itself ends
/// the process at once. So does a further signal that reaches the handler, with status 1, or 0
/// after `EndWell`.
void HandleFatalSignal(int number, siginfo_t* information, void* context);

}  // namespace varnoth
