#pragma once

#include <algorithm>

#include "driver/geometry_state.hpp"
#include "geometry/sample_geometry.hpp"

namespace varnoth {

/// The evenly spaced range samples of the sweep.
inline constexpr int SWEEP_SAMPLES = 11;
inline constexpr int NEAR_SAMPLE = 0;
inline constexpr int MID_SAMPLE = SWEEP_SAMPLES / 2;
inline constexpr int FAR_SAMPLE = SWEEP_SAMPLES - 1;

/// The geometry of the samples on the first and on the last line.
struct SWEEP {
  ARRAY<double> spl{0, SWEEP_SAMPLES};  ///< position in master range samples, not rounded
  MASTER_LINE lines[2] = {};
  SAMPLE_GEOMETRY samples[2][SWEEP_SAMPLES];

  /// The eleven values of a line.
  template <class VALUE>
  VECTOR<double> Values(AZIMUTH_POSITION k, VALUE value) const {
    VECTOR<double> values(0, SWEEP_SAMPLES);
    std::transform(samples[k], samples[k] + SWEEP_SAMPLES, values.begin(), value);
    return values;
  }
  /// Phases in cycles.
  VECTOR<double> Phase(AZIMUTH_POSITION k) const {
    return Values(k, [](const SAMPLE_GEOMETRY& sample) { return sample.phase; });
  }
};

/// Simulates the interferometric phase of a smooth Earth on two lines by eleven samples, and works
/// out baseline, range difference, height per cycle and viewing angles of each. Writes one table
/// per line. The formulas stand in docs/geometry.md. Throws what the geolocation and the orbits
/// throw.
SWEEP sweep_flat_earth(const SCENE& scene, double look_direction, BISTATIC_B& bistatic);

/// Corners and angles of the sweep's ends.
CORNERS corners_of(const SWEEP& sweep);
/// The sweep's values line by line.
LINE_VALUES line_values_of(const SWEEP& sweep);

}  // namespace varnoth
