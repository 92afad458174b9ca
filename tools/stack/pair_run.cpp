#include "tools/stack/pair_run.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tools/alarm_line.hpp"
#include "tools/message.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

namespace fs = std::filesystem;

constexpr const char* FAILED = "failed";
constexpr const char* STOPPED = "stopped";

[[noreturn]] void FailBySystem(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// The program's whole path.
std::string FindProgram() {
  const char* const named = std::getenv("VARNOTH");
  const std::string word = named != nullptr && *named != '\0' ? named : "varnoth";
  std::vector<fs::path> places;
  if (word.find('/') != word.npos) {
    places.emplace_back(word);
  } else if (const char* path = std::getenv("PATH")) {
    for (const char* rest = path;; ++rest) {
      const char* const end = std::strchr(rest, ':');
      places.push_back(fs::path(end ? std::string(rest, end) : std::string(rest)) / word);
      if (end == nullptr) break;
      rest = end;
    }
  }
  for (const fs::path& place : places) {
    if (fs::is_regular_file(place) && access(place.c_str(), X_OK) == 0) return fs::absolute(place);
  }
  throw std::runtime_error("there is no program " + word);
}

/// The name that a pair's results will have, beside those of other pairs and the kept logs.
std::string NameOf(const std::string& pair) {
  std::string name = fs::absolute(pair + "/.").lexically_normal().parent_path().filename();
  if (name == FAILED || name == STOPPED) {
    throw std::runtime_error("no pair can have the name of the directory of the " + name + " ones");
  }
  if (name.starts_with('.')) throw std::runtime_error("a pair's name can't begin with a point");
  return name;
}

/// A pair's copy. While its process lives it holds a lock, so that only what a killed one left is
/// removed by others.
class WORK_DIRECTORY {
 public:
  WORK_DIRECTORY(const std::string& results, const std::string& name)
      : path(results + "/." + name + ".XXXXXX") {
    if (mkdtemp(path.data()) == nullptr) FailBySystem(results);
    lock = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock >= 0) flock(lock, LOCK_SH | LOCK_NB);
    fs::permissions(path, static_cast<fs::perms>(0777 & ~CreationMask()));
  }
  ~WORK_DIRECTORY() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
    if (lock >= 0) ::close(lock);
  }
  WORK_DIRECTORY(const WORK_DIRECTORY&) = delete;
  WORK_DIRECTORY& operator=(const WORK_DIRECTORY&) = delete;

  const std::string& Path() const { return path; }

  /// Removes what a killed process left of a pair, of the names in the results.
  static void RemoveLeft(const std::string& results, const std::vector<std::string>& names,
                         const std::string& pair) {
    constexpr std::size_t LETTERS = 6;
    const std::string start = "." + pair + ".";
    for (const std::string& name : names) {
      if (!name.starts_with(start) || name.size() != start.size() + LETTERS) continue;
      const fs::path place = fs::path(results) / name;
      const int other = ::open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
      if (other < 0) continue;
      std::error_code ignored;
      if (flock(other, LOCK_EX | LOCK_NB) == 0) fs::remove_all(place, ignored);
      ::close(other);
    }
  }

 private:
  std::string path;
  int lock = -1;
};

const std::vector<std::string> ARGUMENTS = {
    "-FlatEarthPolyDegree", "4",          "-MasterPar", "master.pool", "-SlavePar", "slave.pool",
    "-ParameterPool",       "insar.pool", "-log_pp",    "log.pool",    "-pid",      "varnoth"};
constexpr int STOP_REQUESTED = 2;

}  // namespace

PAIR_RUNNER::PAIR_RUNNER(const std::string& where) : program(FindProgram()) {
  results = fs::weakly_canonical(where);
}

PAIR_END PAIR_RUNNER::Run(const std::string& pair) {
  if (!fs::exists(pair + "/insar.pool")) {
    throw std::runtime_error("is no pair: it has no insar.pool");
  }
  const std::string name = NameOf(pair);
  const fs::path source = fs::canonical(pair);
  const std::string target = fs::weakly_canonical(results + "/" + name).string() + "/";
  if (target.starts_with(source.string() + "/")) {
    throw std::runtime_error("results in " + results + " would replace it");
  }
  std::error_code no_directory;
  if (!fs::create_directories(results, no_directory) && no_directory) {
    throw std::runtime_error("no directory " + results + ": " + no_directory.message());
  }
  if (!taken.insert(name).second) {
    throw std::runtime_error("another pair of this call has the name " + name);
  }
  if (taken.size() == 1) FindHidden();
  WORK_DIRECTORY::RemoveLeft(results, hidden, name);
  const WORK_DIRECTORY copy(results, name);
  const std::string& work = copy.Path();
  // Of links, what they lead to: a common master pool, and no input is written through one.
  fs::copy(source, work, fs::copy_options::recursive);
  std::error_code ignored;
  for (const char* left : {"/OK.varnoth", "/ERROR.varnoth", "/log.varnoth"}) {
    fs::remove(work + left, ignored);
  }
  const int status = signals.Run(program, ARGUMENTS, work);
  if (signals.Pending() != 0) return PAIR_END::INTERRUPTED;
  for (const char* kind : {FAILED, STOPPED}) {
    fs::remove(results + "/" + kind + "/" + name + ".log", ignored);
  }
  // The last update fails with a word in the log only.
  const bool is_done = status == 0 && fs::exists(work + "/OK.varnoth") &&
                       FirstAlarm(work + "/log.varnoth").text.empty();
  if (!is_done) return Keep(work, name, status);
  Place(work, name);
  return PAIR_END::DONE;
}

void PAIR_RUNNER::FindHidden() {
  for (const auto& entry : fs::directory_iterator(results)) {
    std::string name = entry.path().filename();
    if (name.starts_with('.')) hidden.push_back(std::move(name));
  }
}

/// An older result and the new one change places in one step; then the older one goes.
void PAIR_RUNNER::Place(const std::string& work, const std::string& name) const {
  const std::string target = results + "/" + name;
  if (renameat2(AT_FDCWD, work.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0) return;
  if (errno == EINVAL || errno == ENOSYS) {
    // A file system that can't exchange: moved aside, the older one is still whole.
    const std::string aside = results + "/." + name + ".before";
    std::error_code ignored;
    fs::remove_all(aside, ignored);
    fs::rename(target, aside, ignored);
    fs::rename(work, target);
    fs::remove_all(aside, ignored);
    return;
  }
  if (errno != ENOENT) FailBySystem(target);
  fs::rename(work, target);
}

PAIR_END PAIR_RUNNER::Keep(const std::string& work, const std::string& name, int status) const {
  const bool is_stopped = status == STOP_REQUESTED;
  const std::string kept = results + "/" + (is_stopped ? STOPPED : FAILED);
  const std::string log = work + "/log.varnoth";
  if (!fs::exists(log)) std::ofstream{log};
  fs::create_directories(kept);
  const std::string file = kept + "/" + name + ".log";
  fs::rename(log, file);
  const ALARM_LINE alarm = FirstAlarm(file);
  const std::string reason = alarm.text.empty() ? "no ALARM line in the log" : alarm.text;
  Tell(file, alarm.number, is_stopped ? SEVERITY::WARNING : SEVERITY::ERROR,
       name + ": " +
           (is_stopped ? "stop requested" : "status " + std::to_string(status) + ": " + reason));
  return is_stopped ? PAIR_END::STOPPED : PAIR_END::FAILED;
}

}  // namespace varnoth::tools
