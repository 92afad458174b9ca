#pragma once

#include "driver/flat_earth_sweep.hpp"
#include "driver/geometry_state.hpp"

namespace varnoth {

/// Mean of four longitudes (degrees), each unwrapped relative to the first; from 0 up to but not
/// including 360.
float average_longitude(float first, float second, float third, float fourth);

/// The single numbers of the scene: centre, means, the effective baseline that is reported (the
/// prediction from the mean metres per cycle), pixel spacings; logs them.
STATISTICS work_out_statistics(const SCENE& scene, const SWEEP& sweep, const CORNERS& corners);

}  // namespace varnoth
