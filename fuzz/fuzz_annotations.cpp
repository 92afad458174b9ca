#include "fuzz_target.hpp"
#include "imported_scene.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/sentinel1_annotation.hpp"
#include "tools/import/sentinel1_orbit_file.hpp"

namespace varnoth::fuzz {

using namespace varnoth::tools;

/// An annotation or an orbit file. What an import takes makes a pool that a run can read.
void FuzzAnnotations(const std::string& input) {
  static const auto INTERPOLATION = FindInterpolation("everett_2");
  RunImport([&] {
    const XML_FILE file({"scene.xml", input});
    if (std::string(file.Root().name()) == "Earth_Explorer_File") {
      ReadSentinel1OrbitFile(file);
      return;
    }
    SENTINEL1_ANNOTATION annotation = ReadSentinel1Annotation(file);
    SCENE& scene = annotation.scene;
    CheckScene(scene);
    FitOrbit(scene, *INTERPOLATION);
    const std::vector<VECTOR_3> gaps = VelocityGaps(scene.orbit);
    for (const ANNOTATED_POINT& point : annotation.grid) {
      AlongTrackShift(scene.orbit, gaps, point.time, point.position);
    }
    RequireReadable(scene, INTERPOLATION->text);
  });
}

}  // namespace varnoth::fuzz
