#pragma once

#include "foundation/vector.hpp"
#include "geometry/geolocation_work.hpp"

namespace varnoth {

/// The iteration of `geolocation_fast` on VECTOR objects: the same arguments, results and failures,
/// with "geolocation" as the name in the log. It allocates, so it is the slower form.
///
/// `sat_pos` and `sat_vel` have three elements each, with any first index; `earth_vect` takes the
/// range of `sat_pos`. `work` is scratch. In addition it throws the texts of the VECTOR operations:
/// a vector without three elements, a velocity along the radius ("VECTOR operator /= : division by
/// 0.0").
void geolocation(GEOLOCATION_WORK& work, const VECTOR<double>& sat_pos,
                 const VECTOR<double>& sat_vel, VECTOR<double>& earth_vect, double& heading,
                 double& latitude, double& longitude, double& incidence, double look_direction,
                 double height, double rpole, double requator, double fast_time,
                 double los_velocity);

}  // namespace varnoth
