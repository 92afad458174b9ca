#include "tools/import/scene_finish.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "tools/import/failure.hpp"
#include "tools/import/satellite_path.hpp"
#include "tools/import/scene_check.hpp"

namespace varnoth::tools {

namespace {

MOMENT MiddleLine(const SCENE& scene) {
  const std::int64_t middle = scene.line_count.value / 2;
  return LineTime(scene, static_cast<double>(middle));
}

GROUND_POINT LocateCentre(const SCENE& scene) {
  const std::int64_t middle = scene.sample_count.value / 2;
  return LocateSample(scene, SATELLITE_PATH(scene.orbit), MiddleLine(scene),
                      RangeTime(scene, static_cast<double>(middle)));
}

void SettleCentre(SCENE& scene) {
  constexpr double FARTHEST = 50e3;  // m; mountains move a centre by ten at most
  const GROUND_POINT centre = LocateCentre(scene);
  if (scene.center_latitude.source.empty()) {
    const std::string source = "the middle sample at height 0";
    scene.center_latitude = {centre.latitude, source};
    scene.center_longitude = {std::remainder(centre.longitude, 360.0), source};
    return;
  }
  VECTOR_3 gap = GroundPosition(scene.center_latitude.value, scene.center_longitude.value, 0.0,
                                scene.equatorial_radius.value, scene.polar_radius.value);
  for (std::size_t axis = 0; axis < 3; ++axis) gap[axis] -= centre.position[axis];
  if (Norm(gap) < FARTHEST) return;
  char text[160];
  std::snprintf(text, sizeof text,
                "the stated centre is %.0f km from where times, ranges and orbit place it: look "
                "direction, date or orbit may be wrong",
                Norm(gap) / 1000);
  scene.warnings.emplace_back(text);
}

bool IsWithin(const std::string& file, const std::string& folder) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const fs::path whole = fs::weakly_canonical(file, ignored);
  const fs::path above = fs::weakly_canonical(folder, ignored);
  return std::mismatch(above.begin(), above.end(), whole.begin(), whole.end()).first == above.end();
}

double LargestOf(const std::vector<VECTOR_3>& gaps) {
  double largest = 0.0;
  for (const VECTOR_3& gap : gaps) largest = std::max(largest, Norm(gap));
  return largest;
}

}  // namespace

void WarnOfOddVectors(SCENE& scene) {
  try {
    CheckVectors(scene.orbit);
  } catch (const std::runtime_error& failure) {
    scene.warnings.push_back(scene.orbit.source + ": " + failure.what() +
                             ": don't trust the other vectors of this list either");
  }
}

double MeasureVelocities(SCENE& scene, const std::vector<SEEN_POINT>& points,
                         const std::string& remedy) {
  constexpr double NOTEWORTHY = 0.02;  // m
  if (scene.orbit.epoch.size() < 3) return 0.0;
  const std::vector<VECTOR_3> gaps = VelocityGaps(scene.orbit);
  double shift = 0.0;
  for (const SEEN_POINT& point : points) {
    shift =
        std::max(shift, std::abs(AlongTrackShift(scene.orbit, gaps, point.time, point.position)));
  }
  if (shift < NOTEWORTHY) return shift;
  char text[200];
  std::snprintf(text, sizeof text,
                "the listed velocities are up to %.1f mm/s off the derivative of the positions: "
                "with these positions expect errors of up to %.2f m along the track",
                LargestOf(gaps) * 1000, shift);
  scene.warnings.push_back(text + remedy);
  return shift;
}

void MeasureVelocities(SCENE& scene) {
  constexpr double NONSENSE = 1.0;  // m/s; quick orbits have 0.02
  constexpr double COARSE = 180.0;  // s; from here on nine positions lose a mm/s
  if (scene.orbit.epoch.size() < 3) return;
  const double gap = LargestOf(VelocityGaps(scene.orbit));
  const std::size_t steps = scene.orbit.epoch.size() - 1;
  const double step = static_cast<double>(MicrosecondsBetween(scene.orbit.epoch.front(),
                                                              scene.orbit.epoch.back())) /
                      MICROSECONDS_OF_SECOND / static_cast<double>(steps);
  const bool is_coarse = step > COARSE;
  if (!(gap < NONSENSE)) {
    char text[200];
    std::snprintf(text, sizeof text,
                  is_coarse ? "state vectors every %.4g s are too far apart to interpolate: the "
                              "derivative of the positions is up to %.3g m/s off the velocities"
                            : "of state vectors every %.4g s the listed velocities are up to %.3g "
                              "m/s off the derivative of the positions: they are not Earth-fixed",
                  step, gap);
    throw std::runtime_error(text);
  }
  const SEEN_POINT middle{MiddleLine(scene), ToVector(LocateCentre(scene).position)};
  MeasureVelocities(scene, {middle},
                    is_coarse ? "; denser vectors mend it" : "; a precise orbit mends it");
}

std::string UsualInterpolation(const SCENE& scene) {
  const std::size_t needed = FindInterpolation("everett_8")->vectors_beyond;
  constexpr std::size_t FEW = 12;  // a polynomial through more would swing
  CheckScene(scene);               // for the time of the last line
  STATE_VECTORS vectors = scene.orbit;
  const COVERAGE coverage = CoverageOf(vectors, scene.first_line.value, LastLine(scene));
  const bool is_covered = coverage.ahead >= needed && coverage.behind >= needed;
  if (is_covered && MoveOntoGrid(vectors)) return "everett_8";
  return vectors.epoch.size() <= FEW ? "polynom" : "localpolynom_0_9";
}

void FinishScene(SCENE& scene, const INTERPOLATION& interpolation) {
  CheckScene(scene);
  WarnOfOddVectors(scene);
  FitOrbit(scene, interpolation);
  SettleCentre(scene);
  MeasureVelocities(scene);
}

TOOL_STATUS WithFailuresTold(const std::string& file, const std::function<TOOL_STATUS()>& work) {
  try {
    return work();
  } catch (const IMPORT_FAILURE& failure) {
    Tell(failure.file, failure.line, SEVERITY::ERROR, failure.what());
  } catch (const std::filesystem::filesystem_error& failure) {
    const std::string& place = failure.path1().native();
    const std::string& target = failure.path2().native();
    Tell(place.empty() ? file : place, 1, SEVERITY::ERROR,
         (target.empty() ? "" : "does not get to " + target + ": ") + failure.code().message());
  } catch (const std::runtime_error& failure) {
    Tell(file, 1, SEVERITY::ERROR, failure.what());
  }
  return FINDINGS;
}

bool IsWrongUsage(const std::string& interpolation, const std::string& out,
                  const std::vector<std::string>& inputs) {
  std::error_code ignored;
  for (const std::string& input : inputs) {
    const bool is_within = std::filesystem::is_directory(input, ignored) && IsWithin(out, input);
    if (!is_within && !std::filesystem::equivalent(out, input, ignored)) continue;
    Tell(out, 1, SEVERITY::ERROR, is_within ? "lies within an input" : "is an input");
    return true;
  }
  if (interpolation.empty() || FindInterpolation(interpolation)) return false;
  Tell(inputs[0], 1, SEVERITY::ERROR, "no run knows the interpolation " + interpolation);
  return true;
}

void TellScene(const SCENE& scene, const std::string& interpolation, const std::string& source,
               const std::string& out) {
  for (const std::string& warning : scene.warnings) Tell(source, 1, SEVERITY::WARNING, warning);
  std::string what = scene.satellite.value + (scene.mode.empty() ? "" : " " + scene.mode);
  if (scene.absolute_orbit.value > 0) {
    what += ", orbit " + std::to_string(scene.absolute_orbit.value);
  }
  const auto print = [&](const std::string& text) {
    std::printf("%s: %s\n", Printable(out).c_str(), Printable(text).c_str());
  };
  print(scene.name.value + ", " + what + ", " + std::to_string(scene.line_count.value) +
        " lines, " + std::to_string(scene.sample_count.value) + " samples, from " +
        IsoTime(scene.first_line.value));
  print(std::to_string(scene.orbit.epoch.size()) + " vectors of " + scene.orbit.source + ", by " +
        interpolation);
  for (const std::string& remark : scene.orbit.remarks) print(remark);
}

}  // namespace varnoth::tools
