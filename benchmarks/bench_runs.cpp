// Whole runs as processes, from their start to their end, on fresh copies of the real pair.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;
using WORDS = std::vector<std::string>;

const WORDS RUN = {
    PRODUCT,      "-FlatEarthPolyDegree", "4",          "-MasterPar", "master.pool", "-SlavePar",
    "slave.pool", "-ParameterPool",       "insar.pool", "-log_pp",    "log.pool"};

/// A directory that goes with the object, for directories of runs.
class STAGE {
 public:
  STAGE() {
    std::string name = fs::temp_directory_path() / "bench_XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch directory");
    root = name;
  }
  ~STAGE() { fs::remove_all(root); }
  STAGE(const STAGE&) = delete;
  STAGE& operator=(const STAGE&) = delete;

  /// A directory with a fresh copy of the pair.
  std::string Fresh(int number) const {
    const fs::path directory = root / std::to_string(number);
    fs::remove_all(directory);
    fs::create_directory(directory);
    for (const char* name : {"master.pool", "slave.pool", "insar.pool"}) {
      fs::copy_file(fs::path(PAIR) / name, directory / name);
    }
    return directory;
  }

 private:
  fs::path root;
};

std::vector<char*> Pointers(WORDS& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// Runs a program in a directory, its screen going to a file there or nowhere; gives the status.
int Run(WORDS words, const std::string& directory, const char* screen = "/dev/null") {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, screen, O_WRONLY | O_CREAT, 0666);
  pid_t child = 0;
  const int failure =
      posix_spawn(&child, words[0].c_str(), &actions, nullptr, Pointers(words).data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (failure != 0 || waitpid(child, &status, 0) != child) throw std::runtime_error(words[0]);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

double SecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct TEXT_FILE {
  std::string content;
  explicit TEXT_FILE(const std::string& path) {
    std::ifstream stream(path);
    content.assign(std::istreambuf_iterator<char>(stream), {});
  }
  long Count(char byte) const { return std::count(content.begin(), content.end(), byte); }
};

/// The floor's words, counted on a run: lines and entries, each with their mean length.
WORDS FloorWords() {
  const STAGE stage;
  const std::string directory = stage.Fresh(0);
  const long before = static_cast<long>(TEXT_FILE(directory + "/insar.pool").content.size());
  if (Run(RUN, directory, "screen") != 0) throw std::runtime_error("the pair does not run");
  WORDS words = {FILE_WORK};
  const auto add = [&words](long count, long bytes) {
    words.push_back(std::to_string(count));
    words.push_back(std::to_string(bytes / count));
  };
  for (const char* name : {"/log.varnoth", "/screen"}) {
    const TEXT_FILE lines(directory + name);
    add(lines.Count('\n'), static_cast<long>(lines.content.size()));
  }
  constexpr long RESULTS = 39;
  add(RESULTS, static_cast<long>(TEXT_FILE(directory + "/insar.pool").content.size()) - before);
  constexpr long SOFTWARE_ROWS = 6;
  add(SOFTWARE_ROWS, static_cast<long>(TEXT_FILE(directory + "/log.pool").content.size()));
  return words;
}

const WORDS& WordsOf(bool is_floor) {
  static const WORDS FLOOR = FloorWords();
  return is_floor ? FLOOR : RUN;
}

void NeedSuccess(benchmark::State& state, int status, int wanted = 0) {
  if (status != wanted) state.SkipWithError("a run failed");
}

void WholeRun(benchmark::State& state, bool is_floor) {
  const WORDS words = WordsOf(is_floor);
  const STAGE stage;
  for (auto _ : state) {
    const std::string directory = stage.Fresh(0);
    int status = 0;
    state.SetIterationTime(SecondsOf([&] { status = Run(words, directory); }));
    NeedSuccess(state, status);
  }
}
BENCHMARK_CAPTURE(WholeRun, varnoth, false)->UseManualTime();
BENCHMARK_CAPTURE(WholeRun, floor, true)->UseManualTime();

/// Many pairs, two processes at a time.
void ManyPairs(benchmark::State& state, bool is_floor) {
  constexpr int PAIRS = 400;
  const WORDS words = WordsOf(is_floor);
  const STAGE stage;
  for (auto _ : state) {
    std::vector<std::string> directories;
    for (int i = 0; i < PAIRS; ++i) directories.push_back(stage.Fresh(i));
    int failures = 0;
    state.SetIterationTime(SecondsOf([&] {
      const auto every_other = [&](int first) {
        int failed = 0;
        for (int i = first; i < PAIRS; i += 2) failed += Run(words, directories[i]) != 0 ? 1 : 0;
        return failed;
      };
      auto odd = std::async(std::launch::async, every_other, 1);
      failures = every_other(0) + odd.get();
    }));
    NeedSuccess(state, failures);
  }
}
BENCHMARK_CAPTURE(ManyPairs, varnoth, false)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ManyPairs, floor, true)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// From the start to the end at a STOP file.
void Stop(benchmark::State& state, bool is_floor) {
  constexpr int STOPPED = 2;
  const WORDS words = is_floor ? WORDS{NOTHING} : RUN;
  const STAGE stage;
  const std::string directory = stage.Fresh(0);
  std::ofstream(directory + "/STOP.varnoth") << "\n";
  for (auto _ : state) {
    int status = 0;
    state.SetIterationTime(SecondsOf([&] { status = Run(words, directory); }));
    NeedSuccess(state, status, is_floor ? 0 : STOPPED);
  }
}
BENCHMARK_CAPTURE(Stop, varnoth, false)->UseManualTime();
BENCHMARK_CAPTURE(Stop, floor, true)->UseManualTime();

/// Largest memory that a program had, in kB. The system keeps it while the process stands at its
/// end; its report to the parent would count what the child had of the parent before its start.
double LargestMemory(WORDS words, const std::string& directory) {
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    if (chdir(directory.c_str()) != 0 || ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
    execv(words[0].c_str(), Pointers(words).data());
    _exit(1);
  }
  double memory = 0;
  int status = 0;
  waitpid(child, &status, 0);
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACEEXIT);
  while (ptrace(PTRACE_CONT, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child &&
         WIFSTOPPED(status)) {
    std::ifstream lines("/proc/" + std::to_string(child) + "/status");
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("VmHWM:")) memory = std::stod(line.substr(6));
    }
  }
  return memory;
}

/// One kB stands as a nanosecond.
void Memory(benchmark::State& state, bool is_floor) {
  const WORDS words = WordsOf(is_floor);
  const STAGE stage;
  for (auto _ : state) {
    const double memory = LargestMemory(words, stage.Fresh(0));
    if (memory <= 0) state.SkipWithError("memory could not be read");
    state.SetIterationTime(memory * 1e-9);
  }
}
BENCHMARK_CAPTURE(Memory, varnoth, false)->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(Memory, floor, true)->UseManualTime()->Iterations(1);

}  // namespace
