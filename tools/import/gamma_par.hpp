#pragma once

#include "tools/import/scene.hpp"
#include "tools/import/source.hpp"

namespace varnoth::tools {

/// What a GAMMA parameter file (`.slc.par`) says of its single-look image. Throws IMPORT_FAILURE,
/// which names a multi-looked image, one in ground range, and one that is not at zero Doppler.
SCENE ReadGammaPar(const SOURCE_FILE& source);

}  // namespace varnoth::tools
