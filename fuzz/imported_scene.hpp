#pragma once

#include <cfenv>
#include <stdexcept>
#include <string>

#include "tools/import/scene.hpp"

namespace varnoth::fuzz {

/// Runs an import, which may refuse its input: without traps, as the tools do.
template <class IMPORT>
void RunImport(IMPORT import) {
  fedisableexcept(FE_ALL_EXCEPT);
  try {
    import();
  } catch (const std::runtime_error&) {
    return;  // a refusal
  }
}

/// The pool of a scene that an import takes must give the scene's values back.
void RequireReadable(const tools::SCENE& scene, const std::string& interpolation);

}  // namespace varnoth::fuzz
