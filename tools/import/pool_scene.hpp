#pragma once

#include "tools/import/scene.hpp"
#include "tools/pool/document.hpp"

namespace varnoth::tools {

/// A scene pool, as an import or a user wrote it, with what a pair or another orbit needs to know
/// of it. Values that need not be there are 0 or empty; velocities are not read.
struct POOL_SCENE {
  POOL_DOCUMENT document;
  SCENE scene;
  SOURCED<MOMENT> reference;  ///< that the pool's times count from
};

/// Throws IMPORT_FAILURE for what is missing or mistyped, and for an orbit that is not one of
/// universal times in the pool itself.
POOL_SCENE ReadPoolScene(const std::string& file);

}  // namespace varnoth::tools
