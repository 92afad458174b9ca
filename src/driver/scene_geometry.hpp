#pragma once

#include "driver/geometry_state.hpp"
#include "geometry/ground_point.hpp"

namespace varnoth {

/// The zero-Doppler point of a scene at a range time (s, two-way) and a height (m), for a master
/// state (m, m/s), on a side of the track: -1 left, +1 right. Throws what geolocation_fast throws.
GROUND_POINT Locate(const GEOMETRY_STATE& state, GEOLOCATION_WORK& work, const double position[3],
                    const double velocity[3], double side, double height, double range_time);

/// Time (s) at which the slave passes closest to a target.
double SlaveTime(const GEOMETRY_STATE& state, const double target[3]);

/// Distance of two points, m.
double Distance(const double a[3], const double b[3]);

/// What a baseline has across the line of sight: sqrt(B² - ΔR²), m.
double EffectiveBaseline(double baseline, double delta_r);

}  // namespace varnoth
