#pragma once

#include "tools/import/interpolation.hpp"
#include "tools/import/scene.hpp"

namespace varnoth::tools {

/// The time of the last line.
MOMENT LastLine(const SCENE& scene);

/// Fails with a std::runtime_error for a value that no radar image has, as a wrong unit or a slip
/// of the reader makes it.
void CheckScene(const SCENE& scene);

/// Brings a scene's state vectors into the form that its pool keeps: cut to the scene, checked, and
/// on an even grid where the epochs are rounded. Warns where they don't reach far enough beyond the
/// scene, and fails where they don't cover it or where the interpolation needs even epochs and
/// there are none.
void FitOrbit(SCENE& scene, const INTERPOLATION& interpolation);

}  // namespace varnoth::tools
