#pragma once

#include <csignal>

namespace varnoth {

class CONTROLLER_IFC;

/// Turns each fatal signal into the failure path of a run: the log tells the signal, the supervisor
/// gets its marked line, the failure mark stands, and the process ends with status 1. Caught are
/// hangup, interrupt, quit, illegal instruction, abort, floating point exception, bus error,
/// segmentation violation, bad system call, termination, urgent socket condition, CPU and file size
/// limits; everything else keeps its default action.
///
/// The handler makes only async-signal-safe calls, on a stack of its own; see `HandleFatalSignal`.
/// Without a controller the status is 255 and there is no mark.
void install_signal_handlers(const CONTROLLER_IFC* controller);

/// Holds all signals of its scope; they arrive at its end.
class HELD_SIGNALS {
 public:
  HELD_SIGNALS();
  ~HELD_SIGNALS() { sigprocmask(SIG_SETMASK, &former, nullptr); }
  HELD_SIGNALS(const HELD_SIGNALS&) = delete;
  HELD_SIGNALS& operator=(const HELD_SIGNALS&) = delete;

 private:
  sigset_t former{};
};

}  // namespace varnoth
