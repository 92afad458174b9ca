#include "tools/stack/stack_scenes.hpp"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <numbers>

#include "tools/import/failure.hpp"
#include "tools/import/satellite_path.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/scene_finish.hpp"

namespace varnoth::tools {

namespace {

constexpr double LIGHT = 299792458.0;  // m/s

/// A scene as it was read, before the stack's point is known.
struct READ_SCENE {
  STACK_SCENE out;
  std::unique_ptr<SATELLITE_PATH> path;
  GROUND_POINT middle;
};

/// Fails with IMPORT_FAILURE and std::runtime_error.
READ_SCENE ReadScene(const std::string& file, double height) {
  READ_SCENE read;
  read.out.file = file;
  SCENE& scene = read.out.scene;
  scene = ReadPoolScene(file).scene;
  CheckScene(scene);
  read.out.day = scene.first_line.value.day;
  read.out.date = IsoTime(scene.first_line.value).substr(0, 10);
  read.path = std::make_unique<SATELLITE_PATH>(scene.orbit);
  const auto middle = [](std::int64_t count) { return static_cast<double>(count - 1) / 2; };
  read.middle = LocateSample(scene, *read.path, LineTime(scene, middle(scene.line_count.value)),
                             RangeTime(scene, middle(scene.sample_count.value)), height);
  return read;
}

class STACK_READER {
 public:
  explicit STACK_READER(double above) : height(above) {}

  std::optional<SCENE_STACK> Read(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
      Try(file, [&] { scenes.push_back(ReadScene(file, height)); });
    }
    std::stable_sort(scenes.begin(), scenes.end(), [](const READ_SCENE& a, const READ_SCENE& b) {
      return a.out.scene.first_line.value.day < b.out.scene.first_line.value.day;
    });
    CheckDates();
    CheckTrack();
    if (scenes.size() < 2 && !has_told) {
      Tell(files.front(), 1, SEVERITY::ERROR, "a stack has two scenes or more");
      has_told = true;
    }
    if (has_told) return std::nullopt;
    READ_SCENE& central = FindCentral();
    LookAt(central.middle);
    CheckPlaces(central);
    if (has_told) return std::nullopt;
    SCENE_STACK stack{{}, central.middle, height, CriticalBaseline(central)};
    for (READ_SCENE& read : scenes) stack.scenes.push_back(std::move(read.out));
    return stack;
  }

 private:
  void Try(const std::string& file, const std::function<void()>& work) {
    if (WithFailuresTold(file, [&] { return work(), GOOD; }) != GOOD) has_told = true;
  }
  void Refuse(const READ_SCENE& read, const std::string& text) {
    Tell(read.out.file, 1, SEVERITY::ERROR, text);
    has_told = true;
  }

  void CheckDates() {
    for (std::size_t i = 1; i < scenes.size(); ++i) {
      if (scenes[i].out.day == scenes[i - 1].out.day) {
        Refuse(scenes[i], "is of " + scenes[i].out.date + ", as " + scenes[i - 1].out.file);
      }
    }
  }

  /// "S1A, relative orbit 108", as far as it is known.
  static std::string TrackOf(const SCENE& scene) {
    const std::int64_t orbit = scene.relative_orbit.value;
    std::string text = scene.satellite.value;
    if (orbit > 0) text += (text.empty() ? "" : ", ") + ("relative orbit " + std::to_string(orbit));
    return text;
  }

  void CheckTrack() {
    std::map<std::string, int> count;
    for (const READ_SCENE& read : scenes) {
      const std::string track = TrackOf(read.out.scene);
      if (!track.empty()) ++count[track];
    }
    if (count.size() < 2) return;
    const auto most =
        std::max_element(count.begin(), count.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    for (const READ_SCENE& read : scenes) {
      const std::string track = TrackOf(read.out.scene);
      if (track.empty() || track == most->first) continue;
      Refuse(read, "is of " + track + ", and " + std::to_string(most->second) +
                       (most->second == 1 ? " scene of " : " scenes are of ") + most->first);
    }
  }

  READ_SCENE& FindCentral() {
    VECTOR_3 mean{};
    for (const READ_SCENE& read : scenes) {
      for (std::size_t axis = 0; axis < 3; ++axis) {
        mean[axis] += read.middle.position[axis] / static_cast<double>(scenes.size());
      }
    }
    const auto away = [&](const READ_SCENE& read) {
      return Distance(ToVector(read.middle.position), mean);
    };
    return *std::min_element(scenes.begin(), scenes.end(),
                             [&](const auto& a, const auto& b) { return away(a) < away(b); });
  }

  void LookAt(const GROUND_POINT& point) {
    const VECTOR_3 place = ToVector(point.position);
    for (READ_SCENE& read : scenes) {
      const SCENE& scene = read.out.scene;
      MOMENT time;
      read.out.satellite = read.path->StateClosestTo(place, time);
      read.out.range = Distance(ToVector(read.out.satellite.position), place);
      read.out.line = 1e-6 *
                      static_cast<double>(MicrosecondsBetween(scene.first_line.value, time)) *
                      scene.line_rate.value;
      read.out.sample = (2 * read.out.range / LIGHT - scene.first_range_time.value) *
                        scene.range_sampling_frequency.value;
    }
  }

  void CheckPlaces(const READ_SCENE& central) {
    constexpr double FARTHEST = 20e3;  // m; some five times the critical baseline of long waves
    for (const READ_SCENE& read : scenes) {
      const double apart =
          Distance(ToVector(read.out.satellite.position), ToVector(central.out.satellite.position));
      const double middles =
          Distance(ToVector(read.middle.position), ToVector(central.middle.position));
      if (apart > FARTHEST) {
        Refuse(read, "is of another track: its satellite sees the point " + Kilometres(apart) +
                         " from where that of " + central.out.file + " does");
      } else if (!(Overlap(central.out, read.out) > 0)) {
        Refuse(read, "does not overlap with " + central.out.file + ": the middles are " +
                         Kilometres(middles) + " apart");
      }
    }
  }

  /// Where the fringes' frequency over range reaches the bandwidth (Zebker and Villasenor 1992,
  /// Decorrelation in interferometric radar echoes). The sampling frequency stands for the
  /// bandwidth, which a pool does not tell: an upper limit.
  static double CriticalBaseline(const READ_SCENE& central) {
    const SCENE& scene = central.out.scene;
    return central.out.range * scene.range_sampling_frequency.value / scene.radar_frequency.value *
           std::tan(central.middle.incidence * std::numbers::pi / 180);
  }

  double height;
  std::vector<READ_SCENE> scenes;
  bool has_told = false;
};

struct SPAN {
  double first;
  double last;
};

double Common(const SPAN& of, const SPAN& with) {
  const double common = std::min(of.last, with.last) - std::max(of.first, with.first);
  return std::clamp(common / (of.last - of.first), 0.0, 1.0);
}

}  // namespace

std::optional<SCENE_STACK> ReadStack(const std::vector<std::string>& files, double height) {
  return STACK_READER(height).Read(files);
}

std::vector<std::string> PoolsIn(const std::vector<std::string>& places) {
  namespace fs = std::filesystem;
  std::vector<std::string> files;
  for (const std::string& place : places) {
    std::error_code none;
    if (!fs::is_directory(place, none)) {
      files.push_back(place);
      continue;
    }
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(place, none)) {
      if (entry.path().extension() == ".pool") found.push_back(entry.path().string());
    }
    if (none) throw IMPORT_FAILURE(place, 1, none.message());
    if (found.empty()) throw IMPORT_FAILURE(place, 1, "has no *.pool");
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

double Overlap(const STACK_SCENE& of, const STACK_SCENE& with) {
  // In seconds from the point, since rates may differ.
  const auto span = [](double at, std::int64_t count, double rate) {
    return SPAN{-at / rate, (static_cast<double>(count - 1) - at) / rate};
  };
  const auto lines = [&](const STACK_SCENE& scene) {
    return span(scene.line, scene.scene.line_count.value, scene.scene.line_rate.value);
  };
  const auto samples = [&](const STACK_SCENE& scene) {
    return span(scene.sample, scene.scene.sample_count.value,
                scene.scene.range_sampling_frequency.value);
  };
  return Common(lines(of), lines(with)) * Common(samples(of), samples(with));
}

}  // namespace varnoth::tools
