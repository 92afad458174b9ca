#pragma once

#include "driver/flat_earth_sweep.hpp"
#include "driver/geometry_state.hpp"

namespace varnoth {

/// Fits a polynomial of the given degree to the phase along each line, in cycles over master range
/// samples (neither scaled nor centred), by least squares. Returns the polynomials, the fringe
/// frequencies and the pass direction; logs them with the largest misfit (cycles and m).
///
/// A degree of -1, or one that gives a singular system, ends the process by `nrerror`. Throws the
/// text "ARRAY : can not copy array" for a degree below -1, and that text or ERROR_NO_MEMORY for
/// one whose fit takes too much memory.
FLAT_EARTH fit_flat_earth_polynomials(const SCENE& scene, const SWEEP& sweep, int degree);

}  // namespace varnoth
