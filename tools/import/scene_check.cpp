#include "tools/import/scene_check.hpp"

#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "tools/import/orbit_work.hpp"

namespace varnoth::tools {

namespace {

void CheckWithin(const char* name, double value, const std::string& source, double least,
                 double most) {
  if (value >= least && value <= most) return;
  char text[160];
  std::snprintf(text, sizeof text, "%s of %.10g: between %.10g and %.10g is usual", name, value,
                least, most);
  throw std::runtime_error(text + (source.empty() ? "" : " (" + source + ")"));
}

}  // namespace

MOMENT LastLine(const SCENE& scene) {
  const double seconds = static_cast<double>(scene.line_count.value - 1) / scene.line_rate.value;
  return Later(scene.first_line.value, std::llround(seconds * MICROSECONDS_OF_SECOND));
}

void CheckScene(const SCENE& scene) {
  const auto check = [](const char* name, const auto& number, double least, double most) {
    CheckWithin(name, static_cast<double>(number.value), number.source, least, most);
  };
  check("number of lines", scene.line_count, 2, 5e6);
  check("number of samples", scene.sample_count, 2, 5e6);
  check("two-way time of the first sample in s", scene.first_range_time, 1e-3, 5e-2);
  check("line rate in Hz", scene.line_rate, 10, 2e4);
  check("azimuth bandwidth in Hz", scene.azimuth_bandwidth, 10, 1e5);
  check("range sampling frequency in Hz", scene.range_sampling_frequency, 1e6, 1e10);
  check("radar frequency in Hz", scene.radar_frequency, 1e8, 1e11);
  check("equatorial radius in m", scene.equatorial_radius, 6.36e6, 6.40e6);
  check("polar radius in m", scene.polar_radius, 6.34e6, 6.40e6);
  check("longitude in degrees", scene.center_longitude, -180, 360);
  check("latitude in degrees", scene.center_latitude, -90, 90);
  check("orbit number", scene.absolute_orbit, 0, 1e7);
  const double seconds = static_cast<double>(scene.line_count.value) / scene.line_rate.value;
  CheckWithin("scene length in s", seconds, "lines over line rate", 1e-2, 1e4);
}

void FitOrbit(SCENE& scene, const INTERPOLATION& interpolation) {
  STATE_VECTORS& orbit = scene.orbit;
  CheckOrder(orbit);
  const MOMENT& first = scene.first_line.value;
  const MOMENT last = LastLine(scene);
  const COVERAGE coverage = CoverageOf(orbit, first, last);
  if (coverage.ahead == 0 || coverage.behind == 0) {
    const std::string held = orbit.epoch.empty() ? "no state vectors"
                                                 : "vectors from " + IsoTime(orbit.epoch.front()) +
                                                       " to " + IsoTime(orbit.epoch.back());
    throw std::runtime_error("the scene from " + IsoTime(first) + " to " + IsoTime(last) +
                             " is not covered: " + orbit.source + " holds " + held);
  }
  const std::size_t needed = interpolation.vectors_beyond;
  if (coverage.ahead < needed || coverage.behind < needed) {
    scene.warnings.push_back(
        "only " + std::to_string(coverage.ahead) + " state vectors lie ahead of the scene and " +
        std::to_string(coverage.behind) + " behind it: " + interpolation.text + " needs " +
        std::to_string(needed) + " on each side and extrapolates there; an orbit file mends it");
  }
  CutToScene(orbit, first, last, interpolation);
  CheckVectors(orbit);
  if (!MoveOntoGrid(orbit) && interpolation.needs_even_epochs) {
    throw std::runtime_error("the epochs of the state vectors are uneven, and " +
                             interpolation.text +
                             " needs even ones: take --interpolation localpolynom_0_9");
  }
}

}  // namespace varnoth::tools
