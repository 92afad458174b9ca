#pragma once

#include <array>
#include <cmath>
#include <vector>

/// Satellite states over time, Earth-fixed: s, m, m/s.
struct PASS {
  std::vector<double> times;
  std::vector<std::array<double, 3>> positions, velocities;
};

/// Two minutes, from 36000 s on, of a circular orbit of a radius (m) above the turning Earth; the
/// longitude of its ascending node (rad) is that at the start.
inline PASS FlyPass(double radius, double node) {
  const double spin = 7.292115e-5, rate = std::sqrt(3.986004418e14 / std::pow(radius, 3));
  PASS pass;
  for (double t = 0; t <= 120; t += 10) {
    const double along = 0.65 + rate * t, l = node - spin * t, inclination = 1.71;
    const double c = std::cos(inclination), v = radius * rate;
    const double a = std::cos(along), b = std::sin(along);
    const double x = radius * (a * std::cos(l) - b * c * std::sin(l));
    const double y = radius * (a * std::sin(l) + b * c * std::cos(l));
    pass.times.push_back(36000 + t);
    pass.positions.push_back({x, y, radius * b * std::sin(inclination)});
    pass.velocities.push_back({-v * (b * std::cos(l) + a * c * std::sin(l)) + spin * y,
                               -v * (b * std::sin(l) - a * c * std::cos(l)) - spin * x,
                               v * a * std::sin(inclination)});
  }
  return pass;
}
