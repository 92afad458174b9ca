#include "tools/report/collect.hpp"

#include <algorithm>
#include <filesystem>

#include "tools/report/read_pair.hpp"

namespace varnoth::tools {

namespace {

namespace fs = std::filesystem;

bool IsPair(const fs::path& directory) {
  std::error_code error;
  // A link that leads nowhere and a pool without rights are a pair's as well, to be told of.
  return fs::symlink_status(directory / "insar.pool", error).type() != fs::file_type::not_found;
}

bool IsDirectory(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

/// The entries of a directory that are not hidden, by name.
std::vector<fs::path> Entries(const fs::path& directory, COLLECTION& found) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error)) {
    if (!entry->path().filename().string().starts_with('.')) entries.push_back(entry->path());
  }
  if (error) found.remarks.push_back({directory.string(), 1, SEVERITY::ERROR, error.message()});
  std::ranges::sort(entries);
  return entries;
}

/// Whether there is such a directory.
bool TakeKeptLogs(const fs::path& directory, ENDING kept_as, COLLECTION& found) {
  if (!IsDirectory(directory) || IsPair(directory)) return false;
  for (const fs::path& log : Entries(directory, found)) {
    if (log.extension() == ".log") found.places.push_back({log.string(), kept_as});
  }
  return true;
}

void TakeResultsDirectory(const fs::path& directory, COLLECTION& found) {
  const std::size_t before = found.places.size();
  const bool has_failed = TakeKeptLogs(directory / "failed", ENDING::FAILED, found);
  const bool has_stopped = TakeKeptLogs(directory / "stopped", ENDING::STOPPED, found);
  for (const fs::path& entry : Entries(directory, found)) {
    if (IsDirectory(entry) && IsPair(entry)) {
      found.places.push_back({entry.string(), ENDING::DONE});
    } else if (IsDirectory(entry) && !(has_failed && entry.filename() == "failed") &&
               !(has_stopped && entry.filename() == "stopped")) {
      found.remarks.push_back(
          {entry.string(), 1, SEVERITY::WARNING, "is no pair: it has no insar.pool"});
    }
  }
  if (found.places.size() == before) {
    found.remarks.push_back({directory.string(), 1, SEVERITY::ERROR,
                             "is neither a pair, with an insar.pool, nor a directory of results"});
  }
}

}  // namespace

COLLECTION FindPairs(const std::vector<std::string>& places) {
  COLLECTION found;
  for (const std::string& place : places) {
    if (IsDirectory(place) && IsPair(place)) {
      found.places.push_back({place, ENDING::DONE});
    } else if (IsDirectory(place)) {
      found.has_results_directory = true;
      TakeResultsDirectory(place, found);
    } else {
      std::error_code error;
      const bool is_there = fs::exists(place, error);
      const std::string reason = error      ? error.message()
                                 : is_there ? "is no directory"
                                            : "there is no such directory";
      found.remarks.push_back({place, 1, SEVERITY::ERROR, reason});
    }
  }
  std::ranges::stable_sort(found.places, {}, [](const COLLECTION::PLACE& place) {
    return place.kept_as == ENDING::FAILED ? 0 : place.kept_as == ENDING::STOPPED ? 1 : 2;
  });
  return found;
}

PAIR_RECORD ReadPlace(const COLLECTION::PLACE& place) {
  const bool is_log = place.kept_as == ENDING::FAILED || place.kept_as == ENDING::STOPPED;
  return is_log ? ReadKeptLog(place.path, place.kept_as) : ReadPair(place.path);
}

}  // namespace varnoth::tools
