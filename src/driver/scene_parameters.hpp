#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Copies what the run needs of its scenes from the three pools. Throws what the
/// pools throw, and ERROR_ARGUMENT for a look direction or an observation mode that is none. Blanks
/// in the text of a look direction do no harm.
void read_scene_parameters(SCENE& scene, PARAMETER_POOL& master_pool, PARAMETER_POOL& slave_pool,
                           PARAMETER_POOL& insar_pool);

/// Centres of the two acquisitions as their pools state them, degrees.
struct SCENE_CENTERS {
  float center_longitude[2] = {};
  float center_latitude[2] = {};
};
SCENE_CENTERS read_scene_centers(PARAMETER_POOL& master_pool, PARAMETER_POOL& slave_pool);
/// Takes the two radii out of the ellipsoid parameters. Throws ERROR_DATA, behind a line at ALARM,
/// if there are too few.
void take_ellipsoid_radii(SCENE& scene);

/// Works out the times of the last line and the last sample.
void work_out_end_times(SCENE& scene);

}  // namespace varnoth
