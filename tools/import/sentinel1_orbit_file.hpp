#pragma once

#include "tools/import/interpolation.hpp"
#include "tools/import/xml_file.hpp"

namespace varnoth::tools {

/// In the order of their worth.
enum class ORBIT_KIND { PRECISE, RESTITUTED, OTHER };

/// An orbit file (EOF) of Sentinel-1 with all its vectors.
struct SENTINEL1_ORBIT_FILE {
  ORBIT_KIND kind = ORBIT_KIND::OTHER;  ///< by the header, or by the name where that is silent
  std::string satellite;                ///< "S1A"
  STATE_VECTORS orbit;
  std::vector<MOMENT> degraded;       ///< epochs whose quality is not nominal
  std::vector<std::string> warnings;  ///< about the file as a whole
};

/// Throws IMPORT_FAILURE, which names a frame or time system that is not Earth-fixed or UTC.
SENTINEL1_ORBIT_FILE ReadSentinel1OrbitFile(const XML_FILE& file);

/// Takes a scene's orbit from a file, or from the best one of a folder: of the scene's satellite,
/// with enough vectors for the interpolation on both sides of the scene; a precise one before a
/// restituted one, and of these the newest. Files whose names exclude the scene stay closed; of the
/// others the vectors and the header count. The orbit's source names the choice, and warnings the
/// files that were passed over. Returns its path. Throws IMPORT_FAILURE if there is none.
std::string TakeSentinel1Orbit(SCENE& scene, const std::string& file_or_folder,
                               const INTERPOLATION& interpolation);

}  // namespace varnoth::tools
