#pragma once

#include <algorithm>

#include "driver/geometry_state.hpp"
#include "geometry/sample_geometry.hpp"

namespace varnoth {

/// Number and indices of the sweep's evenly spaced range samples.
inline constexpr int SWEEP_SAMPLES = 11;
inline constexpr int NEAR_SAMPLE = 0;
inline constexpr int MID_SAMPLE = SWEEP_SAMPLES / 2;
inline constexpr int FAR_SAMPLE = SWEEP_SAMPLES - 1;

/// The geometry of the samples on the first and the last line of the master.
///
///     const SWEEP sweep = sweep_flat_earth(scene, 1.0, bistatic);
///     const double phase = sweep.samples[FIRST_LINE][MID_SAMPLE].phase;  // cycles
///     const VECTOR<double> phases = sweep.Phase(LAST_LINE);  // 11, near to far range
struct SWEEP {
  ARRAY<double> spl{0, SWEEP_SAMPLES};  ///< position in master range samples, not rounded
  MASTER_LINE lines[2] = {};
  SAMPLE_GEOMETRY samples[2][SWEEP_SAMPLES];

  /// `value(sample)` of the eleven samples of a line, from index 0.
  template <class VALUE>
  VECTOR<double> Values(AZIMUTH_POSITION k, VALUE value) const {
    VECTOR<double> values(0, SWEEP_SAMPLES);
    std::transform(samples[k], samples[k] + SWEEP_SAMPLES, values.begin(), value);
    return values;
  }
  /// The phases of a line, cycles, from index 0.
  VECTOR<double> Phase(AZIMUTH_POSITION k) const {
    return Values(k, [](const SAMPLE_GEOMETRY& sample) { return sample.phase; });
  }
};

/// Simulates the interferometric phase of a smooth Earth at eleven samples on each of two lines,
/// and computes baseline, range difference, height per cycle and viewing angles of each sample.
/// `look_direction` is -1 (left) or +1 (right). Logs a table per line; `bistatic` collects its
/// statistics in single pass. docs/geometry.md has the formulas. Throws what the geolocation and
/// the orbits throw.
SWEEP sweep_flat_earth(const SCENE& scene, double look_direction, BISTATIC_B& bistatic);

/// Corners and angles at the ends of the sweep's lines, degrees.
CORNERS corners_of(const SWEEP& sweep);
/// The sweep's values line by line; each vector has indices 0 to 10.
LINE_VALUES line_values_of(const SWEEP& sweep);

}  // namespace varnoth
