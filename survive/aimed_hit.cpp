// Hits a program with a signal at a place in its code instead of at a moment, so that what is found
// does not depend on how busy the machine is. The program must be linked to fixed addresses.
//
//     aimed_hit count <program>...                 < addresses
//         how often each address is passed in a run, as far as 1000 times
//     aimed_hit hit <address> <occurrence> <steps> <signal> <second signal or 0> <program>...   <
//     addresses
//         Stops where the address is passed for the n-th time, goes some instructions further,
//         sends the signals, and tells how the program ended. The first address of the list is the
//         handler, the second what it ends by; a pass of any other one from in there is told as
//         "unsafe".

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

using ADDRESS = unsigned long;

/// A child under ptrace, and its breakpoints.
class TRACED {
 public:
  explicit TRACED(char** command) : child(fork()) {
    if (child == 0) {
      const int nowhere = open("/dev/null", O_WRONLY);
      dup2(nowhere, STDOUT_FILENO);
      ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      execv(command[0], command);
      _exit(127);
    }
    Wait();
    if (!IsStopped()) std::exit(127);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL);
  }

  bool IsStopped() const { return WIFSTOPPED(status); }
  std::string Ending() const {
    return WIFEXITED(status) ? "exit " + std::to_string(WEXITSTATUS(status))
                             : "signal " + std::to_string(WTERMSIG(status));
  }
  void Insert(ADDRESS address) {
    if (saved.contains(address)) return;
    saved[address] = Peek(address);
    Poke(address, (saved[address] & ~0xffL) | 0xcc);
  }
  void Remove(ADDRESS address) {
    Poke(address, saved.at(address));
    saved.erase(address);
  }
  ADDRESS StackTop() const { return static_cast<ADDRESS>(Peek(Registers().rsp)); }

  /// Goes on to the next breakpoint, whose instruction is ahead then; nothing at the end. Signals
  /// on the way are delivered.
  std::optional<ADDRESS> GoOn(int signal = 0) {
    StepOver(signal);
    while (ptrace(PTRACE_CONT, child, nullptr, signal), Wait(), IsStopped()) {
      signal = WSTOPSIG(status);
      user_regs_struct registers = Registers();
      if (signal == SIGTRAP && saved.contains(registers.rip - 1)) {
        --registers.rip;
        ptrace(PTRACE_SETREGS, child, nullptr, &registers);
        return registers.rip;
      }
    }
    return {};
  }
  void Step() {
    ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr);
    Wait();
  }
  void Send(int signal) const { kill(child, signal); }

 private:
  void Wait() { waitpid(child, &status, 0); }
  long Peek(ADDRESS address) const { return ptrace(PTRACE_PEEKTEXT, child, address, nullptr); }
  void Poke(ADDRESS address, long word) const { ptrace(PTRACE_POKETEXT, child, address, word); }
  user_regs_struct Registers() const {
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    return registers;
  }
  /// With a signal ahead nothing is stepped over: the handler comes first.
  void StepOver(int signal) {
    const ADDRESS address = Registers().rip;
    if (signal != 0 || !saved.contains(address)) return;
    Remove(address);
    Step();
    if (IsStopped()) Insert(address);
  }

  pid_t child;
  int status = 0;
  std::map<ADDRESS, long> saved;
};

std::vector<ADDRESS> ReadAddresses() {
  std::vector<ADDRESS> addresses;
  for (ADDRESS address = 0; std::scanf("%lx", &address) == 1;) addresses.push_back(address);
  return addresses;
}

void Count(TRACED program) {
  std::map<ADDRESS, long> passes;
  for (const ADDRESS address : ReadAddresses()) program.Insert(address);
  while (const auto address = program.GoOn()) {
    if (++passes[*address] == 1000) program.Remove(*address);
  }
  for (const auto& [address, count] : passes) std::printf("%lx %ld\n", address, count);
}

std::string Hit(TRACED program, char** words) {
  const ADDRESS place = std::strtoul(words[0], nullptr, 16);
  const std::vector<ADDRESS> watched = ReadAddresses();
  const ADDRESS handler = watched.at(0);
  const ADDRESS ending = watched.at(1);
  program.Insert(place);
  for (int left = std::atoi(words[1]); left > 0; --left) {
    if (!program.GoOn()) return "missed";
  }
  program.Remove(place);
  for (int left = std::atoi(words[2]); left > 0 && program.IsStopped(); --left) program.Step();
  if (!program.IsStopped()) return "missed";
  for (const ADDRESS address : watched) program.Insert(address);

  if (const int second = std::atoi(words[4]); second != 0) program.Send(second);
  bool is_inside = false;
  ADDRESS back = 0;
  for (auto at = program.GoOn(std::atoi(words[3])); at; at = program.GoOn()) {
    if (*at == handler && back == 0) program.Insert(back = program.StackTop());
    if (*at != handler && *at != ending && *at != back && is_inside) return "unsafe";
    is_inside = *at != back && (is_inside || *at == handler || *at == ending);
  }
  return program.Ending();
}

}  // namespace

int main(int count, char** words) {
  if (count > 2 && std::string(words[1]) == "count") {
    Count(TRACED(words + 2));
  } else if (count > 7 && std::string(words[1]) == "hit") {
    std::puts(Hit(TRACED(words + 7), words + 2).c_str());
  } else {
    return 2;
  }
}
