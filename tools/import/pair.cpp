#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>

#include "pool/entry_text.hpp"
#include "tools/import/commands.hpp"
#include "tools/import/failure.hpp"
#include "tools/import/keyed_text.hpp"
#include "tools/import/pool_scene.hpp"
#include "tools/import/satellite_path.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/scene_finish.hpp"
#include "tools/import/source.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

/// Lines or samples of the master: the first one, and how many.
struct SECTION {
  std::int64_t first = 0;
  std::int64_t count = 0;
};

/// Nothing for a text that is no first and last one.
std::optional<SECTION> ParseSection(const std::string& text) {
  std::int64_t first = 0;
  std::int64_t last = 0;
  const char* const stop = text.data() + text.size();
  const auto [colon, no_first] = std::from_chars(text.data(), stop, first);
  if (no_first != std::errc() || colon == stop || *colon != ':') return std::nullopt;
  const auto [end, no_last] = std::from_chars(colon + 1, stop, last);
  if (no_last != std::errc() || end != stop || first < 0 || first >= last) return std::nullopt;
  return SECTION{first, last - first + 1};
}

/// Throws std::runtime_error for a section that the image does not have.
SECTION SectionOf(const std::string& text, std::int64_t all, const std::string& what) {
  if (text.empty()) return {0, all};
  const SECTION section = ParseSection(text).value_or(SECTION{0, all + 1});
  if (section.first + section.count <= all) return section;
  throw std::runtime_error("--" + what + " " + text +
                           ": the scene has 0:" + std::to_string(all - 1));
}

using CORNERS = std::array<VECTOR_3, 4>;

CORNERS CornersOf(const SCENE& scene, const SATELLITE_PATH& path, const SECTION& lines,
                  const SECTION& samples) {
  CORNERS corners;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const bool is_late = i >= 2;
    const bool is_far = i == 1 || i == 2;  // around the edge
    const auto line = static_cast<double>(lines.first + (is_late ? lines.count - 1 : 0));
    const auto sample = static_cast<double>(samples.first + (is_far ? samples.count - 1 : 0));
    corners[i] = ToVector(
        LocateSample(scene, path, LineTime(scene, line), RangeTime(scene, sample)).position);
  }
  return corners;
}

VECTOR_3 MiddleOf(const CORNERS& corners) {
  VECTOR_3 middle{};
  for (const VECTOR_3& corner : corners) {
    for (std::size_t axis = 0; axis < 3; ++axis) middle[axis] += corner[axis] / 4;
  }
  return middle;
}

/// Distance of two convex footprints in metres, 0 or less where they overlap: the widest gap that
/// an edge of either leaves between them (separating axes). A plane through the Earth's centre and
/// an edge stands for the edge.
double Apart(const CORNERS& a, const CORNERS& b) {
  double widest = -1e9;
  for (const auto& [edges, others] : {std::pair(a, b), std::pair(b, a)}) {
    for (std::size_t i = 0; i < edges.size(); ++i) {
      VECTOR_3 normal = Cross(edges[i], edges[(i + 1) % edges.size()]);
      const double length = Norm(normal);
      const double inside = Dot(normal, MiddleOf(edges)) > 0 ? 1.0 : -1.0;
      double nearest = 1e9;
      for (const VECTOR_3& other : others) {
        nearest = std::min(nearest, -inside * Dot(normal, other) / length);
      }
      widest = std::max(widest, nearest);
    }
  }
  return widest;
}

struct PAIR {
  POOL_SCENE master;
  POOL_SCENE slave;
  SECTION lines;
  SECTION samples;
  std::vector<std::string> warnings;
};

/// Fails for two scenes that no interferogram can be made of.
void CheckFit(const PAIR& pair, bool is_single_pass) {
  constexpr double FARTHEST = 20e3;  // m; some five times the critical baseline of long waves
  const SCENE& master = pair.master.scene;
  const SCENE& slave = pair.slave.scene;
  const SATELLITE_PATH master_path(master.orbit);
  const SATELLITE_PATH slave_path(slave.orbit);
  const std::int64_t middle_line = pair.lines.first + pair.lines.count / 2;
  const MOMENT middle = LineTime(master, static_cast<double>(middle_line));
  const SATELLITE_STATE here = master_path.At(middle);
  const SATELLITE_STATE there = slave_path.At(slave_path.ClosestTo(ToVector(here.position)));
  const double baseline = Distance(ToVector(here.position), ToVector(there.position));
  const std::string distance =
      ": the satellites' paths are " + Kilometres(baseline) + " apart at the master's middle line";
  const auto fail = [&](const std::string& text) {
    throw IMPORT_FAILURE(pair.slave.document.file, 1, text);
  };
  if (!is_single_pass && !master.satellite.value.empty() && !slave.satellite.value.empty() &&
      master.satellite.value != slave.satellite.value) {
    fail("is of " + slave.satellite.value + ", and the master of " + master.satellite.value +
         distance);
  }
  if (master.relative_orbit.value > 0 && slave.relative_orbit.value > 0 &&
      master.relative_orbit.value != slave.relative_orbit.value) {
    fail("is of relative orbit " + std::to_string(slave.relative_orbit.value) +
         ", and the master of " + std::to_string(master.relative_orbit.value) + distance);
  }
  if (master.look_direction.value != slave.look_direction.value) {
    fail("looks to the other side than the master");
  }
  const CORNERS master_corners = CornersOf(master, master_path, pair.lines, pair.samples);
  const CORNERS slave_corners =
      CornersOf(slave, slave_path, {0, slave.line_count.value}, {0, slave.sample_count.value});
  const double far = Distance(MiddleOf(master_corners), MiddleOf(slave_corners));
  // Beyond the horizon the planes of the edges no longer tell.
  const double apart = far > 3e6 ? far : Apart(master_corners, slave_corners);
  if (apart > 0) fail("the footprints are " + Kilometres(apart) + " apart");
  if (baseline > FARTHEST) fail("is of another track" + distance);
  if (is_single_pass &&
      MicrosecondsBetween(pair.master.reference.value, pair.slave.reference.value) != 0) {
    fail("the scenes of a single pass need one orbit_reference_time: " +
         PoolTime(pair.master.reference.value) + " and " + PoolTime(pair.slave.reference.value));
  }
}

/// The swath in a name such as s1a-iw1-slc-vv-20250406t022009-...; empty for other names.
std::string SwathOf(const SCENE& scene) {
  const std::string name = Upper(scene.name.value);
  const std::vector<std::string_view> words = WordsOf(name, "-");
  const bool is_known = words.size() > 3 && words[0].starts_with("S1") && words[2] == "SLC";
  return is_known ? std::string(words[1]) : "";
}

void WarnOfDifferences(PAIR& pair, bool is_single_pass) {
  const SCENE& master = pair.master.scene;
  const SCENE& slave = pair.slave.scene;
  const auto differ = [&](const char* what, double a, double b, const char* effect) {
    constexpr double ALIKE = 1e-4;
    if (std::abs(a - b) <= ALIKE * std::abs(a)) return;
    char text[160];
    std::snprintf(text, sizeof text, "%s of %.10g and %.10g: %s", what, a, b, effect);
    pair.warnings.emplace_back(text);
  };
  differ("radar frequencies", master.radar_frequency.value, slave.radar_frequency.value,
         "the phase of a run holds for one frequency");
  const std::string swaths[] = {SwathOf(master), SwathOf(slave)};
  if (!swaths[0].empty() && !swaths[1].empty() && swaths[0] != swaths[1]) {
    pair.warnings.push_back("is of swath " + swaths[1] + ", and the master of " + swaths[0] +
                            ": the images have at most an edge in common");
  }
  differ("range sampling frequencies", master.range_sampling_frequency.value,
         slave.range_sampling_frequency.value, "a run takes the master's for both");
  if (is_single_pass) return;
  const std::int64_t apart = MicrosecondsBetween(master.first_line.value, slave.first_line.value);
  if (apart == 0) pair.warnings.emplace_back("is the master's own scene: all baselines are 0");
}

class INSAR_TEXT {
 public:
  template <class X>
  void Add(const char* key, const X& value, const std::string& comment) {
    ENTRY_TEXT entry(key, POOL_TYPE<X>, ARRAY<STRING>(comment.c_str()));
    entry.Append(value);
    text += entry.Text();
  }
  std::string text;
};

std::string InsarPoolText(const PAIR& pair, const PAIR_REQUEST& request) {
  INSAR_TEXT pool;
  const auto from = [](const SECTION& section, const char* what) {
    return std::string("of the master's ") + what + ", from " + std::to_string(section.first) +
           " on";
  };
  pool.Add("n_samples", static_cast<int>(pair.samples.count), from(pair.samples, "samples"));
  pool.Add("n_lines", static_cast<int>(pair.lines.count), from(pair.lines, "lines"));
  const auto first_line = [&](const POOL_SCENE& of) {
    return static_cast<double>(MicrosecondsBetween(of.reference.value, of.scene.first_line.value)) /
               MICROSECONDS_OF_SECOND +
           static_cast<double>(pair.lines.first) / of.scene.line_rate.value;
  };
  const auto first_sample = [&](const SCENE& scene) {
    return RangeTime(scene, static_cast<double>(pair.samples.first));
  };
  pool.Add("master_first_az_time", first_line(pair.master),
           "seconds after the reference time of the master orbit");
  pool.Add("slave_first_az_time", first_line(pair.slave),
           "seconds after the reference time of the slave orbit");
  pool.Add("master_first_rg_time", first_sample(pair.master.scene), "two-way travel time in [s]");
  pool.Add("slave_first_rg_time", first_sample(pair.slave.scene), "two-way travel time in [s]");
  pool.Add("observation_mode", STRING(request.is_single_pass ? "single_pass" : "dual_pass"),
           "--mode of the import");
  pool.Add("local_height", request.height, "height above the ellipsoid in [m]");
  return pool.text;
}

constexpr const char* CONFIGURATION =
    "FlatEarthPolyDegree 4\nMasterPar master.pool\nSlavePar slave.pool\n"
    "ParameterPool insar.pool\nlog_pp log.pool\n";

/// The first of the files that a directory has not, or with other content; null if it has them all.
const std::string* FindOther(const std::string& directory,
                             const std::vector<std::pair<std::string, std::string>>& files) {
  for (const auto& [name, content] : files) {
    const std::filesystem::path place = std::filesystem::path(directory) / name;
    std::error_code ignored;
    const bool is_file = std::filesystem::is_regular_file(place, ignored);
    if (!is_file || ReadSource(place.string()).content != content) return &name;
  }
  return nullptr;
}

/// Makes a directory that appears with all its files or not at all. An empty one may be there, or
/// one that has them already, as when a stack grows.
void WriteDirectory(const std::string& directory,
                    const std::vector<std::pair<std::string, std::string>>& files) {
  namespace fs = std::filesystem;
  std::string place = directory;
  while (place.size() > 1 && place.ends_with('/')) place.pop_back();
  const std::string* const other = FindOther(place, files);
  if (other == nullptr) return;
  std::string temporary = place + ".XXXXXX";
  if (mkdtemp(temporary.data()) == nullptr) throw std::runtime_error(std::strerror(errno));
  std::error_code ignored;
  try {
    const fs::path whole = fs::path(temporary) / "pair";  // with the permissions of a new directory
    fs::create_directory(whole);
    for (const auto& [name, content] : files) WriteWholeFile((whole / name).string(), content);
    if (::rename(whole.c_str(), place.c_str()) != 0) {
      throw std::runtime_error(errno == ENOTEMPTY || errno == EEXIST
                                   ? "is there and not empty, and its " + *other +
                                         " is not that of these scenes: move it away, or give "
                                         "another directory"
                                   : std::strerror(errno));
    }
  } catch (...) {
    fs::remove_all(temporary, ignored);
    throw;
  }
  fs::remove_all(temporary, ignored);
}

}  // namespace

bool IsSection(const std::string& text) { return ParseSection(text).has_value(); }

TOOL_STATUS ImportPair(const PAIR_REQUEST& request) {
  PAIR pair;
  const TOOL_STATUS status = WithFailuresTold(request.master, [&] {
    pair.master = ReadPoolScene(request.master);
    pair.slave = ReadPoolScene(request.slave);
    CheckScene(pair.master.scene);
    pair.lines = SectionOf(request.lines, pair.master.scene.line_count.value, "lines");
    pair.samples = SectionOf(request.samples, pair.master.scene.sample_count.value, "samples");
    return WithFailuresTold(request.slave, [&] {
      CheckScene(pair.slave.scene);
      CheckFit(pair, request.is_single_pass);
      WarnOfDifferences(pair, request.is_single_pass);
      return GOOD;
    });
  });
  if (status != GOOD) return status;
  return WithFailuresTold(request.out, [&] {
    WriteDirectory(request.out, {{"master.pool", ReadSource(request.master).content},
                                 {"slave.pool", ReadSource(request.slave).content},
                                 {"insar.pool", InsarPoolText(pair, request)},
                                 {"pcf.varnoth", CONFIGURATION}});
    for (const std::string& warning : pair.warnings) {
      Tell(request.slave, 1, SEVERITY::WARNING, warning);
    }
    std::printf("%s: %lld lines from %lld, %lld samples from %lld\n", request.out.c_str(),
                static_cast<long long>(pair.lines.count), static_cast<long long>(pair.lines.first),
                static_cast<long long>(pair.samples.count),
                static_cast<long long>(pair.samples.first));
    return GOOD;
  });
}

}  // namespace varnoth::tools
