#pragma once

#include "driver/geometry_state.hpp"
#include "geometry/bistatic_b.hpp"

namespace varnoth {

/// The evenly spaced range samples of the sweep.
inline constexpr int SWEEP_SAMPLES = 11;

/// What later phases need of the sweep beside the state.
struct SWEEP {
  ARRAY<double> spl{0, SWEEP_SAMPLES};  ///< position in master range samples, not rounded
  ARRAY<double> phase[2] = {{0, SWEEP_SAMPLES}, {0, SWEEP_SAMPLES}};  ///< cycles, per line
  double lambda_m = 0.0;                                              ///< wavelengths, m
  double lambda_s = 0.0;

  /// Of the last sample, the far range end of the last line.
  double target[3] = {};           ///< m
  double master_position[3] = {};  ///< m
  double master_velocity[3] = {};  ///< m/s
  double incidence = 0.0;          ///< degrees
  double metres_per_cycle = 0.0;
};

/// Simulates the interferometric phase of a smooth Earth on two lines by eleven samples, and works
/// out baseline, range difference, height per cycle and viewing angles of each. Leaves the sums of
/// `height_conversion_factor`, `eff_baseline` and `delta_r` in the state, and writes one table per
/// line. The formulas stand in docs/geometry.md. Throws what the geolocation and the orbits throw.
void sweep_flat_earth(GEOMETRY_STATE& state, SWEEP& sweep, BISTATIC_B& bistatic);

}  // namespace varnoth
