#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Copies what the run needs of its scenes from the three pools. Ignores blanks in the text of a
/// look direction. Throws what the pools throw; ERROR_ARGUMENT, after a line at ALARM, for an
/// invalid look direction or observation mode; and std::out_of_range for a pool without a file
/// name.
///
///     read_scene_parameters(scene, master_pool, slave_pool, insar_pool);
///     take_ellipsoid_radii(scene);
///     work_out_end_times(scene);
void read_scene_parameters(SCENE& scene, PARAMETER_POOL& master_pool, PARAMETER_POOL& slave_pool,
                           PARAMETER_POOL& insar_pool);

/// Centres of the two acquisitions as their pools state them, degrees.
struct SCENE_CENTERS {
  float center_longitude[2] = {};
  float center_latitude[2] = {};
};
/// Reads the centres. Throws what the pools throw, and std::out_of_range for a pool without a file
/// name.
SCENE_CENTERS read_scene_centers(PARAMETER_POOL& master_pool, PARAMETER_POOL& slave_pool);
/// Takes the two radii (m) from the ellipsoid parameters. Throws ERROR_DATA, after a line at
/// ALARM, if there are fewer than nine parameters.
void take_ellipsoid_radii(SCENE& scene);

/// Computes the times (s) of the last line and the last sample of both acquisitions.
void work_out_end_times(SCENE& scene);

}  // namespace varnoth
