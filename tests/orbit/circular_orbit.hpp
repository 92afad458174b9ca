#pragma once

#include <array>
#include <cmath>
#include <functional>

#include "orbit/general_orbit.hpp"

namespace varnoth::test {

using TRIPLE = std::array<double, 3>;

/// A circular path about the Earth's centre at a constant rate; Earth-fixed.
struct CIRCLE {
  double radius = 7.0e6;     ///< m
  double inclination = 1.7;  ///< rad
  double node = 0.4;         ///< longitude of the ascending node, rad
  double phase = 0.6;        ///< angle from the node at t = 0, rad
  double rate = 1.078e-3;    ///< rad/s

  /// Position (m) at a time (s), or a derivative of it: each one turns by a right angle.
  TRIPLE operator()(double t, int derivative = 0) const {
    const double angle = phase + rate * t + derivative * M_PI_2;
    const double size = radius * std::pow(rate, derivative);
    const double w = std::sin(angle) * std::cos(inclination);
    return {size * (std::cos(angle) * std::cos(node) - w * std::sin(node)),
            size * (std::cos(angle) * std::sin(node) + w * std::cos(node)),
            size * std::sin(angle) * std::sin(inclination)};
  }
};

/// An orbit that gives the states of a function of time (s) and derivative.
struct ANALYTIC_ORBIT : ORBIT_BASE {
  using ORBIT_BASE::GetPosition, ORBIT_BASE::GetVelocity, ORBIT_BASE::GetAcceleration;
  using ORBIT_BASE::operator=;
  using STATES = std::function<TRIPLE(double, int)>;
  explicit ANALYTIC_ORBIT(STATES function) : states(std::move(function)) {}
  void GetPosition(const double& t, double* out) const override { Give(states(t, 0), out); }
  void GetVelocity(const double& t, double* out) const override { Give(states(t, 1), out); }
  void GetAcceleration(const double& t, double* out) const override { Give(states(t, 2), out); }
  static void Give(const TRIPLE& state, double* out) { std::copy_n(state.data(), 3, out); }
  STATES states;
};

inline void Follow(SCENE_ORBIT& orbit, ANALYTIC_ORBIT::STATES states) {
  orbit.core = std::make_unique<ANALYTIC_ORBIT>(std::move(states));
}

}  // namespace varnoth::test
