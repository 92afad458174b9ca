#include "fuzz_target.hpp"
#include "imported_scene.hpp"
#include "tools/import/gamma_par.hpp"
#include "tools/import/oem.hpp"
#include "tools/import/orbit_work.hpp"
#include "tools/import/prm.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/scene_finish.hpp"

namespace varnoth::fuzz {

namespace {

using namespace varnoth::tools;

void Finish(SCENE scene) {
  const std::string interpolation = UsualInterpolation(scene);
  FinishScene(scene, *FindInterpolation(interpolation));
  RequireReadable(scene, interpolation);
}

/// An image of one second amid a segment's interval.
SCENE SceneWithin(const OEM_SEGMENT& segment) {
  const char* const source = "made up";
  SCENE scene;
  scene.line_count = {101, source};
  scene.sample_count = {101, source};
  const std::int64_t interval = MicrosecondsBetween(segment.first, segment.last);
  scene.first_line = {Later(segment.first, interval / 2), source};
  scene.first_range_time = {0.0055, source};
  scene.line_rate = {100.0, source};
  scene.azimuth_bandwidth = {80.0, source};
  scene.range_sampling_frequency = {1e7, source};
  scene.radar_frequency = {5e9, source};
  scene.look_direction = {"right", source};
  scene.equatorial_radius = {6378137.0, source};
  scene.polar_radius = {6356752.0, source};
  scene.orbit = segment.orbit;
  return scene;
}

}  // namespace

/// An ephemeris, each segment for a scene within it.
void FuzzOem(const std::string& input) {
  RunImport([&] {
    for (const OEM_SEGMENT& segment : ReadOem({"orbit.oem", input}).segments) {
      SCENE scene = SceneWithin(segment);
      const std::string interpolation =
          segment.interpolation.empty() ? UsualInterpolation(scene) : segment.interpolation;
      WarnOfOddVectors(scene);
      FitOrbit(scene, *FindInterpolation(interpolation));
      MeasureVelocities(scene);
      RequireReadable(scene, interpolation);
    }
  });
}

/// A parameter file and, behind a line of "%" alone, its orbit file.
void FuzzPrm(const std::string& input) {
  const std::string separator = "\n%\n";
  const std::size_t end = input.find(separator);
  if (end != input.npos) WriteFile("orbit.LED", input.substr(end + separator.size()));
  RunImport([&] { Finish(ReadPrm({"scene.PRM", input.substr(0, end)})); });
}

void FuzzGammaPar(const std::string& input) {
  RunImport([&] { Finish(ReadGammaPar({"scene.slc.par", input})); });
}

}  // namespace varnoth::fuzz
