#pragma once

#include <string>

#include "tools/import/scene.hpp"

namespace varnoth::tools {

/// The text of a scene pool that a run takes as the master's or the slave's: its keys are those of
/// docs/pool-format.md, with comments that say where each value came from, and besides them
/// `scene_name`, `satellite`, `absolute_orbit`, `relative_orbit` (if known), `n_lines`,
/// `n_samples`, `first_az_time` and `first_rg_time` for what makes a pair of two scenes. Times
/// count from the midnight (UTC) that begins the first line's day.
std::string ScenePoolText(const SCENE& scene, const std::string& interpolation);

/// The part of that text that says where the satellite was; times count from `reference`.
std::string OrbitPoolText(const STATE_VECTORS& orbit, const std::string& interpolation,
                          const SOURCED<MOMENT>& reference);

/// Writes a scene's pool; the file appears whole or not at all. Throws std::runtime_error with the
/// system's reason.
void WriteScenePool(const SCENE& scene, const std::string& interpolation, const std::string& file);

}  // namespace varnoth::tools
