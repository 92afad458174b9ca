#pragma once

#include <optional>
#include <string>
#include <vector>

#include "geometry/ground_point.hpp"
#include "tools/import/pool_scene.hpp"
#include "tools/stack/baseline.hpp"

namespace varnoth::tools {

/// A scene of a stack, as it sees the stack's point.
struct STACK_SCENE {
  std::string file;
  std::string date;      ///< of its first line, as 2018-01-06
  std::int64_t day = 0;  ///< the same, counted from 1970-01-01
  SCENE scene;
  SATELLITE_STATE satellite{};  ///< where it sees the point without Doppler shift
  double range = 0.0;           ///< from there to the point, m
  double line = 0.0;            ///< of the point, from 0
  double sample = 0.0;          ///< likewise
};

/// Scenes of one track, in the order of their dates, and the point for which baselines are told.
struct SCENE_STACK {
  std::vector<STACK_SCENE> scenes;
  GROUND_POINT point;
  double height = 0.0;             ///< of the point above the ellipsoid, m
  double critical_baseline = 0.0;  ///< perpendicular part at which nothing is left in common, m
};

/// Reads scene pools. The point is the middle of the scene whose middle is nearest to the mean of
/// all middles. Tells each file that can't be read, whose scene is of another satellite or track
/// than most, has the date of another one, or does not overlap with the scene of the point; gives
/// nothing if there was one, or if there are fewer than two scenes.
std::optional<SCENE_STACK> ReadStack(const std::vector<std::string>& files, double height);

/// The files of that name, and of a folder all "*.pool" in it. Throws IMPORT_FAILURE if a folder
/// has none.
std::vector<std::string> PoolsIn(const std::vector<std::string>& places);

/// How much of the one scene's image the other one has too: 0 to 1.
double Overlap(const STACK_SCENE& of, const STACK_SCENE& with);

}  // namespace varnoth::tools
