#pragma once

#include <functional>

#include "tools/import/interpolation.hpp"
#include "tools/import/moment.hpp"
#include "tools/import/scene.hpp"
#include "tools/message.hpp"
#include "tools/vector_3.hpp"

namespace varnoth::tools {

/// Warns of vectors that no satellite has, wherever in the list they are. They must be told before
/// the list is cut to the scene: what made them may have touched the others.
void WarnOfOddVectors(SCENE& scene);

/// The interpolation for a scene of which nothing is said: everett_8 where the vectors reach far
/// enough for it and are even, else one that takes them as they are. Fails as CheckScene does.
std::string UsualInterpolation(const SCENE& scene);

/// Checks the scene and its vectors, and brings them into the form that its pool keeps. Works out
/// the centre where its source is empty, and compares it where not; measures the listed velocities
/// against the positions, and fails where they have nothing to do with each other. Failures are
/// std::runtime_error.
void FinishScene(SCENE& scene, const INTERPOLATION& interpolation);

/// A point on the ground (m, Earth-fixed), and when it is seen.
struct SEEN_POINT {
  MOMENT time;
  VECTOR_3 position;
};

/// The velocities of quick orbits are not the derivative of the positions; those who listed them
/// placed the image with both lists apart, and a run takes the positions alone. Measures how far
/// that moves points along the track, the largest distance in m, and warns of it; `remedy` ends the
/// warning.
double MeasureVelocities(SCENE& scene, const std::vector<SEEN_POINT>& points,
                         const std::string& remedy);
/// The same for the middle of the scene. Fails where the velocities are far from the derivative, as
/// those of vectors that are too far apart or not Earth-fixed.
void MeasureVelocities(SCENE& scene);

/// Tells IMPORT_FAILURE and std::runtime_error, the latter at `file`.
TOOL_STATUS WithFailuresTold(const std::string& file, const std::function<TOOL_STATUS()>& work);

/// Tells warnings, on standard output what a pool holds, and remarks.
void TellScene(const SCENE& scene, const std::string& interpolation, const std::string& source,
               const std::string& out);

/// Tells of an interpolation that no run knows (empty: none is wanted), and of an output that is an
/// input.
bool IsWrongUsage(const std::string& interpolation, const std::string& out,
                  const std::vector<std::string>& inputs);

}  // namespace varnoth::tools
