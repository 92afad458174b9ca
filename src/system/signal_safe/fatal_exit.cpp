#include "system/signal_safe/fatal_exit.hpp"

#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "system/signal_safe/uninterrupted.hpp"

namespace varnoth {

namespace {

// Supervisors look for these words. They stay even where a number means another thing on today's
// systems.
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

/// Text of a signal number; empty if it has none.
const char* SignalText(int number) {
  const char* const text = number >= 1 && number <= 31 ? TEXTS[number - 1] : nullptr;
  return text != nullptr ? text : "";
}

constinit FATAL_EXIT_PLAN plan;
constinit std::atomic<bool> is_ending_well = false;
constinit std::atomic<bool> is_entered = false;
constinit int signal_number = 0;
constinit MARK_FAULTS mark_faults;

/// A line, composed in a fixed buffer; it drops what does not fit.
class LINE {
 public:
  LINE(std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) {
      const std::size_t taken = std::min(piece.size(), sizeof text - 1 - size);
      std::memcpy(text + size, piece.data(), taken);
      size += taken;
    }
    text[size++] = '\n';
  }
  std::string_view Text() const { return {text, size}; }

 private:
  char text[1024];  // more than the longest path and the words around it
  std::size_t size = 0;
};

void Tell(LOG_OUTLET& outlet, int level, const LINE& line) {
  if (!outlet.Shows(level)) return;
  outlet.sink.EndLine();  // the signal may have come in the middle of a line
  plan.log->AppendHead(outlet.sink, level);
  outlet.sink.Append(line.Text());
}

void TellAll(LOG_OUTLET& outlet) {
  const char digits[] = {static_cast<char>('0' + signal_number / 10),
                         static_cast<char>('0' + signal_number % 10)};
  const std::string_view number(digits + (signal_number < 10 ? 1 : 0), signal_number < 10 ? 1 : 2);
  const char* const text = SignalText(signal_number);
  if (mark_faults.is_missing) {
    Tell(outlet, WARNING, {"Can not create file ", plan.error_mark, "!"});
  }
  if (mark_faults.is_left) Tell(outlet, WARNING, {"Can not remove file ", plan.ok_mark, "!"});
  Tell(outlet, ALARM, {"got fatal signal ", number, ": ", text});
  if (!plan.is_supervised) return;
  Tell(outlet, ALARM, {"ZOD_MSG|ERROR|", plan.program, " got fatal signal ", number, ": ", text});
}

[[noreturn]] void End() {
  // The file first: the screen may be slower.
  for (LOG_OUTLET* outlet : {&plan.log->file, &plan.log->screen}) {
    if (!outlet->sink.IsOpen() || !outlet->sink.TakesBytes()) continue;
    if (!is_ending_well) TellAll(*outlet);
    outlet->sink.Flush();
  }
  if (is_ending_well) _exit(0);
  _exit(plan.has_controller ? 1 : 255);
}

/// Lets the default action of the alarm end the process, whatever hangs.
void EndWithinASecond() {
  struct sigaction action {};
  action.sa_handler = SIG_DFL;
  sigaction(SIGALRM, &action, nullptr);
  sigset_t alarm_alone;
  sigemptyset(&alarm_alone);
  sigaddset(&alarm_alone, SIGALRM);
  sigprocmask(SIG_UNBLOCK, &alarm_alone, nullptr);
  alarm(1);
}

/// Blocks every signal but the alarm for the time after the handler returns.
void HoldSignals(ucontext_t& interrupted) {
  for (int number = 1; number <= 31; ++number) {
    if (number != SIGALRM) sigaddset(&interrupted.uc_sigmask, number);
  }
}

}  // namespace

void PlanFatalExit(const FATAL_EXIT_PLAN& new_plan) {
  const UNINTERRUPTED whole;
  plan = new_plan;
}

void EndWell() { is_ending_well = true; }

void HandleFatalSignal(int number, siginfo_t* /*information*/, void* context) {
  if (is_entered.exchange(true)) _exit(is_ending_well ? 0 : 1);
  EndWithinASecond();
  signal_number = number;
  // Before the lines: writing them may hang.
  if (!is_ending_well) mark_faults = ChangeMarks(plan.ok_mark, plan.error_mark, 1);
  if (!UNINTERRUPTED::IsUnderWay()) End();
  UNINTERRUPTED::AtItsEnd(End);
  HoldSignals(*static_cast<ucontext_t*>(context));
}

}  // namespace varnoth
