#pragma once

#include "tools/import/scene.hpp"
#include "tools/import/source.hpp"

namespace varnoth::tools {

/// What a GMTSAR parameter file (PRM) says of its focused image, with the vectors of the orbit file
/// (LED) that it names, which lies in the same folder if the name has none. Centre and bandwidth
/// are not in it. Throws IMPORT_FAILURE.
SCENE ReadPrm(const SOURCE_FILE& source);

}  // namespace varnoth::tools
