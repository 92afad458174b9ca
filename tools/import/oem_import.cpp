#include <cmath>
#include <cstdio>

#include "tools/import/commands.hpp"
#include "tools/import/oem.hpp"
#include "tools/import/pool_scene.hpp"
#include "tools/import/satellite_path.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/scene_finish.hpp"
#include "tools/import/scene_pool.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

bool IsWithin(const OEM_SEGMENT& segment, const SCENE& scene) {
  return MicrosecondsBetween(segment.first, scene.first_line.value) >= 0 &&
         MicrosecondsBetween(LastLine(scene), segment.last) >= 0;
}

/// The first segment that may be interpolated all over the scene. Throws std::runtime_error.
const OEM_SEGMENT& SegmentOf(const OEM& oem, const SCENE& scene) {
  constexpr std::size_t SHOWN = 3;
  std::string intervals;
  for (const OEM_SEGMENT& segment : oem.segments) {
    if (IsWithin(segment, scene)) return segment;
    if (&segment - oem.segments.data() >= static_cast<std::ptrdiff_t>(SHOWN)) continue;
    intervals += "; " + IsoTime(segment.first) + " to " + IsoTime(segment.last);
  }
  throw std::runtime_error("the scene from " + IsoTime(scene.first_line.value) + " to " +
                           IsoTime(LastLine(scene)) + " is not within what may be interpolated" +
                           intervals);
}

/// The new orbit must be near the one that stood there; what is beyond any orbit's error is another
/// satellite's, or has another frame or time system than its file says.
void CompareWithFormer(const STATE_VECTORS& former, const std::string& interpolation,
                       SCENE& scene) {
  constexpr double FARTHEST = 1000.0;  // m
  double distance = 0.0;
  const SATELLITE_PATH before(former);
  const SATELLITE_PATH now(scene.orbit, interpolation);
  for (const MOMENT& line : {scene.first_line.value, LastLine(scene)}) {
    const SATELLITE_STATE a = before.At(line);
    const SATELLITE_STATE b = now.At(line);
    distance =
        std::max(distance, std::hypot(a.position[0] - b.position[0], a.position[1] - b.position[1],
                                      a.position[2] - b.position[2]));
  }
  char text[120];
  std::snprintf(text, sizeof text, "up to %.3f m from the scene's former orbit", distance);
  if (!(distance < FARTHEST)) {
    throw std::runtime_error(std::string(text) +
                             ": of another satellite, or its times or frame are not as stated");
  }
  scene.orbit.remarks.push_back(std::string(text) +
                                "; what the head of this pool says of orbits is about that one");
}

/// The pool's lines without the entries of the orbit and the comments directly above them.
std::string WithoutOrbit(const POOL_DOCUMENT& pool) {
  std::vector<bool> is_left_out(pool.lines.size(), false);
  std::vector<std::string> keys = {"orbit_representation", "orbit_interpolation",
                                   "orbit_param_key",      "orbit_value_key",
                                   "orbit_velocity_key",   "orbit_reference_time"};
  for (const char* const name :
       {"orbit_epoch", "orbit_x", "orbit_y", "orbit_z", "orbit_vx", "orbit_vy", "orbit_vz"}) {
    keys.emplace_back(name);
  }
  for (const POOL_ENTRY& entry : pool.entries) {
    if (std::find(keys.begin(), keys.end(), entry.key) == keys.end()) continue;
    std::size_t from = entry.at;
    while (from > 0 && pool.lines[from - 1].text.starts_with('#')) --from;
    std::size_t to = entry.stop;
    if (to < pool.lines.size() && pool.lines[to].text.empty()) ++to;
    std::fill(is_left_out.begin() + static_cast<std::ptrdiff_t>(from),
              is_left_out.begin() + static_cast<std::ptrdiff_t>(to), true);
  }
  std::string text;
  for (std::size_t i = 0; i < pool.lines.size(); ++i) {
    if (is_left_out[i]) continue;
    text += pool.lines[i].text;
    if (pool.lines[i].end != 0 || i + 1 == pool.lines.size()) text += '\n';
  }
  return text;
}

}  // namespace

TOOL_STATUS ImportOem(const OEM_REQUEST& request) {
  if (IsWrongUsage(request.interpolation, request.out, {request.source, request.scene})) {
    return WRONG_USAGE;
  }
  POOL_SCENE pool;
  std::string interpolation = request.interpolation;
  TOOL_STATUS status = WithFailuresTold(request.scene, [&] {
    pool = ReadPoolScene(request.scene);
    CheckScene(pool.scene);
    return GOOD;
  });
  if (status != GOOD) return status;
  SCENE scene = pool.scene;
  status = WithFailuresTold(request.source, [&] {
    const OEM oem = ReadOem(ReadSource(request.source));
    const OEM_SEGMENT& segment = SegmentOf(oem, scene);
    scene.orbit = segment.orbit;
    scene.warnings = oem.warnings;
    scene.orbit.remarks.push_back("may be interpolated from " + IsoTime(segment.first) + " to " +
                                  IsoTime(segment.last));
    if (interpolation.empty()) interpolation = segment.interpolation;
    if (interpolation.empty()) interpolation = UsualInterpolation(scene);
    WarnOfOddVectors(scene);
    FitOrbit(scene, *FindInterpolation(interpolation));
    MeasureVelocities(scene);
    CompareWithFormer(pool.scene.orbit, interpolation, scene);
    return GOOD;
  });
  if (status != GOOD) return status;
  return WithFailuresTold(request.out, [&] {
    for (const std::string& warning : scene.warnings) {
      scene.orbit.remarks.push_back("Mind: " + warning);
    }
    WriteWholeFile(request.out, WithoutOrbit(pool.document) +
                                    OrbitPoolText(scene.orbit, interpolation, pool.reference));
    TellScene(scene, interpolation, request.source, request.out);
    return GOOD;
  });
}

}  // namespace varnoth::tools
