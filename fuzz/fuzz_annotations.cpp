#include <fenv.h>

#include "fuzz_target.hpp"
#include "orbit/general_orbit.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/scene_pool.hpp"
#include "tools/import/sentinel1_annotation.hpp"
#include "tools/import/sentinel1_orbit_file.hpp"

namespace varnoth::fuzz {

namespace {

using namespace varnoth::tools;

void RequireReadable(const SCENE& scene, const std::string& interpolation) {
  WriteFile("scene", ScenePoolText(scene, interpolation));
  PARAMETER_POOL pool("scene");
  double rate = 0.0;
  pool.Read("prf", rate);
  Require(rate == scene.line_rate.value, "the written line rate is read again");
  SCENE_ORBIT orbit;
  orbit.read(pool);
  Require(orbit.core->GetSampleCount() == static_cast<int>(scene.orbit.epoch.size()),
          "all state vectors are read again");
}

}  // namespace

/// An annotation or an orbit file. What an import takes makes a pool that a run can read.
void FuzzAnnotations(const std::string& input) {
  fedisableexcept(FE_ALL_EXCEPT);  // the tools run without traps
  const auto interpolation = FindInterpolation("everett_2");
  try {
    const XML_FILE file({"scene.xml", input});
    if (std::string(file.Root().name()) == "Earth_Explorer_File") {
      ReadSentinel1OrbitFile(file);
      return;
    }
    SENTINEL1_ANNOTATION annotation = ReadSentinel1Annotation(file);
    SCENE& scene = annotation.scene;
    CheckScene(scene);
    FitOrbit(scene, *interpolation);
    const std::vector<VECTOR_3> gaps = VelocityGaps(scene.orbit);
    for (const ANNOTATED_POINT& point : annotation.grid) {
      AlongTrackShift(scene.orbit, gaps, point.time, point.position);
    }
    RequireReadable(scene, interpolation->text);
  } catch (const std::runtime_error&) {
    return;  // a refusal
  }
}

}  // namespace varnoth::fuzz
