#pragma once

#include "foundation/vector.hpp"
#include "geometry/geolocation_work.hpp"

namespace varnoth {

/// The iteration of `geolocation_fast` on VECTOR objects: the same arguments, results and failures,
/// with "geolocation" as the name in the log. It allocates, so it is slower.
///
///     geolocation(work, position, velocity, target, heading, latitude, longitude, incidence, 1.0,
///                 0.0, 6356752.3, 6378137.0, 0.0056, 0.0);  // VECTOR position, velocity, target
///
/// `sat_pos` (m) and `sat_vel` (m/s) have three elements each, with any first index; `earth_vect`
/// (m) takes the index range of `sat_pos`. `work` is scratch. For a satellite outside the Earth it
/// also throws the texts of the VECTOR operations: for a vector that does not have three elements,
/// and for a velocity along the radius ("VECTOR operator /= : division by 0.0").
void geolocation(GEOLOCATION_WORK& work, const VECTOR<double>& sat_pos,
                 const VECTOR<double>& sat_vel, VECTOR<double>& earth_vect, double& heading,
                 double& latitude, double& longitude, double& incidence, double look_direction,
                 double height, double rpole, double requator, double fast_time,
                 double los_velocity);

}  // namespace varnoth
