#include "tools/stack/child.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <initializer_list>
#include <stdexcept>

namespace varnoth::tools {

namespace {

sigset_t SetOf(std::initializer_list<int> signals) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : signals) sigaddset(&set, signal);
  return set;
}

sigset_t Ending() { return SetOf({SIGHUP, SIGINT, SIGTERM}); }

void Demand(int error) {
  if (error != 0) throw std::runtime_error(std::strerror(error));
}

/// What a new process is given, freed at the end.
struct SPAWN_PLAN {
  SPAWN_PLAN() {
    Demand(posix_spawn_file_actions_init(&files));
    Demand(posix_spawnattr_init(&attributes));
  }
  ~SPAWN_PLAN() {
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
  }
  SPAWN_PLAN(const SPAWN_PLAN&) = delete;
  SPAWN_PLAN& operator=(const SPAWN_PLAN&) = delete;

  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
};

int StatusOf(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

HELD_SIGNALS::HELD_SIGNALS() {
  // SIGCHLD too, so that one wait hears of the child's end and of the others.
  sigset_t held = Ending();
  sigaddset(&held, SIGCHLD);
  sigprocmask(SIG_BLOCK, &held, nullptr);
}

HELD_SIGNALS::~HELD_SIGNALS() {
  sigset_t held = Ending();
  sigaddset(&held, SIGCHLD);
  sigprocmask(SIG_UNBLOCK, &held, nullptr);
}

int HELD_SIGNALS::Pending() const {
  sigset_t pending;
  sigpending(&pending);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    if (sigismember(&pending, signal) == 1) return signal;
  }
  return 0;
}

int HELD_SIGNALS::Run(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& directory) const {
  SPAWN_PLAN plan;
  Demand(posix_spawn_file_actions_addchdir_np(&plan.files, directory.c_str()));
  Demand(posix_spawn_file_actions_addopen(&plan.files, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
  Demand(posix_spawn_file_actions_addopen(&plan.files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0));
  sigset_t none = SetOf({});
  Demand(posix_spawnattr_setsigmask(&plan.attributes, &none));
  Demand(posix_spawnattr_setflags(&plan.attributes, POSIX_SPAWN_SETSIGMASK));
  std::vector<char*> words{const_cast<char*>(program.c_str())};
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  pid_t child = 0;
  Demand(
      posix_spawn(&child, program.c_str(), &plan.files, &plan.attributes, words.data(), environ));
  sigset_t awaited = Ending();
  sigaddset(&awaited, SIGCHLD);
  for (int status = 0;;) {
    if (waitpid(child, &status, WNOHANG) == child) return StatusOf(status);
    siginfo_t what{};
    const int signal = sigwaitinfo(&awaited, &what);
    if (signal <= 0 || signal == SIGCHLD) continue;
    kill(child, signal);
    raise(signal);  // stays pending for the caller, but wakes this wait no more
    sigdelset(&awaited, signal);
  }
}

}  // namespace varnoth::tools
