#pragma once

#include "driver/flat_earth_sweep.hpp"
#include "driver/geometry_state.hpp"

namespace varnoth {

/// Fits per line a polynomial of the given degree to the phase over range (cycles over raw master
/// range samples), and gives it with its misfit, the fringe frequencies and the pass direction;
/// logs them. A degree that can't be fitted ends the process through the kernel of the fit, or
/// throws the text "ARRAY : can not copy array" where it is below -1.
FLAT_EARTH fit_flat_earth_polynomials(const SCENE& scene, const SWEEP& sweep, int degree);

}  // namespace varnoth
