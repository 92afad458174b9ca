#pragma once

#include <csignal>

namespace varnoth {

class CONTROLLER_IFC;

/// Turns each fatal signal into the failure path of a run: the log gets the signal's text and, if
/// the run is supervised, the supervisor's line; the failure mark stands; the process ends with
/// status 1. Without a controller the status is 255 and there is no mark.
///
/// Catches hangup, interrupt, quit, illegal instruction, abort, floating-point exception, bus
/// error, segmentation violation, bad system call, termination, urgent socket condition, CPU and
/// file size limits; all other signals keep their default action. The handler makes only
/// async-signal-safe calls, on a stack of its own; see `HandleFatalSignal`.
void install_signal_handlers(const CONTROLLER_IFC* controller);

/// Holds back all signals in its scope; they arrive at its end.
///
///     const HELD_SIGNALS held;
///     install_signal_handlers(&controller);
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
