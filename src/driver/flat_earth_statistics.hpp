#pragma once

#include "driver/flat_earth_sweep.hpp"
#include "driver/geometry_state.hpp"

namespace varnoth {

/// Mean of four longitudes (degrees), each unwrapped relative to the first. The result lies in
/// [0, 360): `average_longitude(359, 359, 1, 3)` is 0.5.
float average_longitude(float first, float second, float third, float fourth);

/// Returns the single numbers of the scene: centre (degrees), means, pixel spacings (m), and as
/// effective baseline (m) the prediction from the mean metres per cycle. Logs all but the centre,
/// and the mean of the sweep's own effective baselines beside the prediction.
STATISTICS work_out_statistics(const SCENE& scene, const SWEEP& sweep, const CORNERS& corners);

}  // namespace varnoth
