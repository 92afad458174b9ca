#pragma once

#include "driver/geometry_state.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Copies what the run needs of its scenes from the three pools into the state. Throws what the
/// pools throw, and ERROR_ARGUMENT for a look direction or an observation mode that is none. Blanks
/// in the text of a look direction do no harm.
void read_scene_parameters(GEOMETRY_STATE& state, PARAMETER_POOL& master_pool,
                           PARAMETER_POOL& slave_pool, PARAMETER_POOL& insar_pool);

/// Reads the scene centres that the pools state, in degrees.
void read_scene_centers(GEOMETRY_STATE& state, PARAMETER_POOL& master_pool,
                        PARAMETER_POOL& slave_pool);

/// Takes the two radii out of the ellipsoid parameters. Throws ERROR_DATA, behind a line at ALARM,
/// if there are too few.
void take_ellipsoid_radii(GEOMETRY_STATE& state);

/// Works out the times of the last line and the last sample.
void work_out_end_times(GEOMETRY_STATE& state);

}  // namespace varnoth
