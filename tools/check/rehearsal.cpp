#include "tools/check/rehearsal.hpp"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>

#include "driver/configuration.hpp"
#include "driver/flat_earth_polynomial.hpp"
#include "driver/flat_earth_statistics.hpp"
#include "driver/flat_earth_sweep.hpp"
#include "driver/look_direction.hpp"
#include "driver/nine_point_grids.hpp"
#include "driver/scene_parameters.hpp"
#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "system/floating_point_traps.hpp"
#include "system/signal_safe/descriptor.hpp"
#include "tools/check/doubts.hpp"
#include "tools/check/failure.hpp"

namespace varnoth::tools {

namespace {

// Lines of the rehearsing process begin with a mark; all others are those of the log.
constexpr char STAGE_MARK = '\1';
constexpr char FINDING_MARK = '\2';
constexpr char FAILURE_MARK = '\3';

void Say(char mark, const std::string& text) {
  const std::string line = std::string("\n") + mark + text + "\n";  // the log may stand in a line
  std::size_t written = 0;
  WriteAll(STDOUT_FILENO, line.data(), line.size(), written);
}

/// Measures without the log: the lines are of orbits that a run does not have, or of times for
/// which it does not ask.
template <class MEASUREMENT>
void WithoutLog(MEASUREMENT measure) {
  struct SILENCE {
    SILENCE() { GlobalLog.set_screen_level(int{NO_LEVEL}); }
    ~SILENCE() { GlobalLog.set_screen_level(int{WARNING}); }
    SILENCE(const SILENCE&) = delete;
    SILENCE& operator=(const SILENCE&) = delete;
  };
  const SILENCE also_when_it_throws;
  measure();
}

/// The rehearsing process.
class REHEARSAL {
 public:
  REHEARSAL(const STEP_POOLS& step_pools, const STEP_SETTINGS& step_settings)
      : pools(step_pools), settings(step_settings) {}

  bool Play() {
    PARAMETER_POOL insar(pools.insar.file.c_str());
    PARAMETER_POOL master(pools.scene[MASTER].file.c_str());
    PARAMETER_POOL slave(pools.scene[SLAVE].file.c_str());
    const TELL_FINDING tell = [](const FINDING& finding) {
      JSON json = ToJson(finding);
      json["is_cause"] = finding.is_cause;
      Say(FINDING_MARK, json.dump(-1, ' ', true, JSON::error_handler_t::replace));
    };
    // Each part for itself, so that one failure does not hide the next.
    bool is_good = Do(STAGE::LOG_POOL, [&] { ReadLogPool(); });
    const auto load = [&](STAGE stage, ROLE role, SCENE_ORBIT& orbit, PARAMETER_POOL& pool) {
      if (Do(stage, [&] { orbit.read(pool); })) return;
      is_good = false;
      WithoutLog([&] { TellUnevenGrid(orbit, pools.scene[role], tell); });
    };
    load(STAGE::MASTER_ORBIT, MASTER, scene.master_orbit, master);
    load(STAGE::SLAVE_ORBIT, SLAVE, scene.slave_orbit, slave);
    is_good &= Do(STAGE::PARAMETERS, [&] {
      scene.local_height = HeightOf(settings, insar);
      read_scene_parameters(scene, master, slave, insar);
      take_ellipsoid_radii(scene);
    });
    if (!is_good) return false;
    is_good = Do(STAGE::TIMES, [&] { work_out_end_times(scene); });
    if (!is_good) return false;
    WithoutLog([&] {
      TellOrbitDoubts(scene, MASTER, pools, tell);
      TellOrbitDoubts(scene, SLAVE, pools, tell);
      TellPairDoubts(scene, pools, tell);
    });
    return Do(STAGE::GEOMETRY, [&] {
      BISTATIC_B bistatic;
      results.sensor_look_direction = settle_look_direction(scene, master, slave);
      raise_missed_trap();
      const SWEEP sweep = sweep_flat_earth(scene, results.sensor_look_direction, bistatic);
      raise_missed_trap();
      WithoutLog([&] { TellSweepDoubts(scene, sweep, pools, tell); });
      results.corners = corners_of(sweep);
      results.line_values = line_values_of(sweep);
      results.statistics = work_out_statistics(scene, sweep, results.corners);
      Say(STAGE_MARK, std::to_string(static_cast<int>(STAGE::POLYNOMIALS)));
      results.flat_earth =
          fit_flat_earth_polynomials(scene, sweep, degree_from_text(settings.degree.value.c_str()));
      Say(STAGE_MARK, std::to_string(static_cast<int>(STAGE::GEOMETRY)));
      print_nine_point_grids(scene, results.sensor_look_direction);
      raise_missed_trap();
    });
  }

 private:
  /// Whether a part of the run ends well.
  template <class PART>
  bool Do(STAGE stage, PART part) {
    Say(STAGE_MARK, std::to_string(static_cast<int>(stage)));
    std::string reason;
    try {
      try {
        part();
        return true;
      } catch (...) {
        raise_missed_trap();
        throw;
      }
    } catch (const ERROR_EXCEPTION& error) {
      reason = error.what();
    } catch (const char* text) {
      reason = text;
    } catch (const std::bad_alloc&) {
      reason = "not enough memory";
    } catch (const std::exception& error) {
      reason = error.what();
    }
    Say(FAILURE_MARK, reason);
    return false;
  }

  /// The columns to which the run adds its row.
  void ReadLogPool() {
    struct stat status {};
    if (stat(settings.log_pool.value.c_str(), &status) != 0) return;  // the run makes one
    PARAMETER_POOL pool(settings.log_pool.value.c_str());
    if (!pool.find_key("software_names")) return;
    ARRAY<STRING> texts;
    for (const char* const column : {"names", "versions", "dates", "start_times", "end_times"}) {
      pool.Read((std::string("software_") + column).c_str(), texts);
    }
    ARRAY<int> seconds;
    pool.Read("software_execution_times", seconds);
  }

  const STEP_POOLS& pools;
  const STEP_SETTINGS& settings;
  varnoth::SCENE scene;
  RESULTS results;
};

/// A directory for the temporary files of the rehearsal, which a fatal signal would leave.
class SCRATCH {
 public:
  SCRATCH() {
    const char* const wanted = std::getenv("TMPDIR");
    path = std::string(wanted != nullptr && *wanted != '\0' ? wanted : "/tmp") + "/check_XXXXXX";
    if (mkdtemp(path.data()) == nullptr) path.clear();
  }
  ~SCRATCH() {
    std::error_code ignored;
    if (!path.empty()) std::filesystem::remove_all(path, ignored);
  }
  SCRATCH(const SCRATCH&) = delete;
  SCRATCH& operator=(const SCRATCH&) = delete;

  /// Without one, the rehearsal fails or not at its own temporary files, as the run would.
  void Enter() const {
    if (!path.empty()) setenv("TMPDIR", path.c_str(), 1);
  }

 private:
  std::string path;
};

/// Takes the lines of the rehearsing process.
class LISTENER {
 public:
  explicit LISTENER(const STEP_POOLS& step_pools, FINDING_LIST& list)
      : pools(step_pools), findings(list) {}

  void Take(const std::string& line) {
    if (line.empty()) return;
    const std::string text = line.substr(1);
    if (line[0] == STAGE_MARK) {
      stage = static_cast<STAGE>(std::stoi(text));
      alarms.clear();
    } else if (line[0] == FINDING_MARK) {
      const JSON json = JSON::parse(text);
      FINDING finding = FindingFromJson(json);
      finding.is_cause = json["is_cause"];
      const auto is_same = [&](const FINDING& other) {
        return other.code == finding.code && other.file == finding.file && other.key == finding.key;
      };
      if (std::none_of(findings.begin(), findings.end(), is_same)) findings.push_back(finding);
    } else if (line[0] == FAILURE_MARK) {
      Fail(text);
    } else {
      TakeLogLine(line);
    }
  }

  void TakeEnd(int status) {
    if (WIFSIGNALED(status)) {
      const bool is_arithmetic = WTERMSIG(status) == SIGFPE;
      Fail(is_arithmetic ? "" : std::string("signal: ") + strsignal(WTERMSIG(status)));
    } else if (WEXITSTATUS(status) != 0 && failures.empty()) {
      Fail("");  // a numerical kernel has ended the process
    }
    // What explains a failure without words is an error now.
    bool is_explained = false;
    for (FINDING& finding : findings) {
      if (!failures.empty() && finding.is_cause) finding.level = SEVERITY::ERROR;
      is_explained |= finding.is_cause;
    }
    for (const FINDING& failure : failures) {
      const bool is_mute = failure.code == "arithmetic";
      const auto is_same = [&](const FINDING& other) {
        return other.level == SEVERITY::ERROR && !failure.key.empty() && other.key == failure.key &&
               (failure.file.empty() || other.file == failure.file);
      };
      if ((is_mute && is_explained) || std::any_of(findings.begin(), findings.end(), is_same)) {
        continue;
      }
      findings.push_back(failure);
    }
  }

 private:
  static constexpr std::size_t MOST_LINES = 10;  // that explain one failure

  void Fail(const std::string& reason) {
    failures.push_back(ExplainFailure(stage, alarms, reason, pools));
    alarms.clear();
  }

  void TakeLogLine(const std::string& line) {
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i] == '\033') {
        i = std::min(line.find('m', i), line.size());
      } else {
        text += line[i];
      }
    }
    const std::size_t colon = text.find(" : ");
    const std::size_t second = colon == text.npos ? colon : text.find(" : ", colon + 3);
    const bool is_headed = second != text.npos;
    const std::string words = is_headed ? text.substr(second + 3) : text;
    if (is_headed && text.starts_with("WARN")) {
      TakeWarning(words);
    } else if (!words.empty() && alarms.size() < MOST_LINES) {
      alarms.push_back(words);
    }
  }

  void TakeWarning(const std::string& words) {
    const auto row = WarningOf(words);
    if (!row) return;
    // Some lines tell in brackets how far off each of hundreds of samples was: one will do.
    const std::string kind = words.substr(0, words.find('('));
    const auto is_same = [&](const FINDING& other) { return other.message.starts_with(kind); };
    if (std::any_of(findings.begin(), findings.end(), is_same)) return;
    findings.push_back({.level = SEVERITY::WARNING,
                        .code = "run-warning",
                        .file = "",
                        .line = 0,
                        .key = "",
                        .message = words,
                        .remedy = *row});
  }

  const STEP_POOLS& pools;
  FINDING_LIST& findings;
  STAGE stage = STAGE::LOG_POOL;
  std::vector<std::string> alarms;
  FINDING_LIST failures;
};

[[noreturn]] void PlayAndExit(const STEP_POOLS& pools, const STEP_SETTINGS& settings, int out) {
  dup2(out, STDOUT_FILENO);
  dup2(out, STDERR_FILENO);
  GlobalLog.set_screen_level(int{WARNING});
  enable_fp_traps();
  bool is_good = false;
  try {
    is_good = REHEARSAL(pools, settings).Play();
  } catch (...) {
    Say(FAILURE_MARK, "can't open the pools");
  }
  _exit(is_good ? 0 : 1);
}

}  // namespace

double HeightOf(const STEP_SETTINGS& settings, PARAMETER_POOL& insar) {
  double height = 0.0;
  if (settings.height.is_given) {
    const HELD_TRAPS held;
    height = std::strtod(settings.height.value.c_str(), nullptr);
  } else {
    insar.Read("local_height", height);
  }
  return height;
}

bool Rehearse(const STEP_POOLS& pools, const STEP_SETTINGS& settings, FINDING_LIST& findings) {
  int ends[2];
  const SCRATCH scratch;
  std::fflush(nullptr);
  const pid_t child = pipe(ends) == 0 ? fork() : -1;
  if (child < 0) throw std::bad_alloc();
  if (child == 0) {
    // Whatever catches signals here, a trap must end the child by its own.
    for (const int number : {SIGFPE, SIGSEGV, SIGABRT}) std::signal(number, SIG_DFL);
    scratch.Enter();
    PlayAndExit(pools, settings, ends[1]);
  }
  close(ends[1]);
  LISTENER listener(pools, findings);
  std::string rest;
  std::array<char, 65536> block;
  ssize_t count = 0;
  while ((count = read(ends[0], block.data(), block.size())) > 0 || (count < 0 && errno == EINTR)) {
    if (count > 0) rest.append(block.data(), static_cast<std::size_t>(count));
    std::size_t start = 0;
    for (std::size_t end = 0; (end = rest.find('\n', start)) != rest.npos; start = end + 1) {
      listener.Take(rest.substr(start, end - start));
    }
    rest.erase(0, start);
  }
  close(ends[0]);
  listener.Take(rest);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  listener.TakeEnd(status);
  return status == 0;
}

}  // namespace varnoth::tools
