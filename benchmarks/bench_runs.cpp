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

/// A directory for the directories of runs; the object removes it.
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

/// Runs a program in a directory and sends its screen to a file there or nowhere; returns the
/// status.
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

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Measures the program and its floor in turn, so that both meet the same disturbances, and reports
/// the medians: the counters "cost" and "floor" in the unit that `measure` has.
template <class MEASURE>
void InTurn(benchmark::State& state, int turns, MEASURE measure) {
  std::vector<double> costs;
  std::vector<double> floors;
  for (auto _ : state) {
    for (int i = 0; i < turns; ++i) {
      costs.push_back(measure(false));
      floors.push_back(measure(true));
    }
  }
  if (Median(floors) <= 0) state.SkipWithError("nothing was measured");
  state.counters["cost"] = Median(costs);
  state.counters["floor"] = Median(floors);
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

void NeedStatus(int status, int wanted) {
  if (status != wanted) throw std::runtime_error("a run failed");
}

constexpr double MILLISECONDS = 1e3;

void WholeRun(benchmark::State& state) {
  const STAGE stage;
  InTurn(state, 30, [&](bool is_floor) {
    const std::string directory = stage.Fresh(0);
    return MILLISECONDS * SecondsOf([&] { NeedStatus(Run(WordsOf(is_floor), directory), 0); });
  });
}
BENCHMARK(WholeRun)->Iterations(1);

/// Many pairs, two processes at a time.
void ManyPairs(benchmark::State& state) {
  constexpr int PAIRS = 400;
  const STAGE stage;
  InTurn(state, 1, [&](bool is_floor) {
    std::vector<std::string> directories;
    for (int i = 0; i < PAIRS; ++i) directories.push_back(stage.Fresh(i));
    const auto every_other = [&](int first) {
      for (int i = first; i < PAIRS; i += 2) NeedStatus(Run(WordsOf(is_floor), directories[i]), 0);
    };
    return MILLISECONDS * SecondsOf([&] {
             auto odd = std::async(std::launch::async, every_other, 1);
             every_other(0);
             odd.get();
           });
  });
}
BENCHMARK(ManyPairs)->Iterations(1);

/// From the start to the end at a STOP file.
void Stop(benchmark::State& state) {
  constexpr int STOPPED = 2;
  const STAGE stage;
  const std::string directory = stage.Fresh(0);
  std::ofstream(directory + "/STOP.varnoth") << "\n";
  InTurn(state, 30, [&](bool is_floor) {
    return MILLISECONDS * SecondsOf([&] {
             NeedStatus(Run(is_floor ? WORDS{NOTHING} : RUN, directory), is_floor ? 0 : STOPPED);
           });
  });
}
BENCHMARK(Stop)->Iterations(1);

/// Largest memory that a program had, in kB. The system keeps it while the process stands at its
/// end; the system's report to the parent would also count memory of the parent, which the child
/// had before the program's start.
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

void Memory(benchmark::State& state) {
  const STAGE stage;
  InTurn(state, 3, [&](bool is_floor) { return LargestMemory(WordsOf(is_floor), stage.Fresh(0)); });
}
BENCHMARK(Memory)->Iterations(1);

}  // namespace
