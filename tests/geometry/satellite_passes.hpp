#pragma once

#include <cmath>

#include "foundation/vector.hpp"

namespace varnoth::test {

inline constexpr double EQUATOR = 6378137.0;
inline constexpr double POLE = 6356752.3142;

struct STATE {
  double position[3], velocity[3];
};

inline constexpr STATE PASSES[] = {{{3e6, 5e6, 4e6}, {-4e3, -2.1e3, 5.5e3}},  // ascending
                                   {{-6e6, 2e5, 3.6e6}, {-3e3, -2e3, -5e3}},  // the date line
                                   {{4e6, -4e6, -4e6}, {-4e3, -4e3, 100}},    // west
                                   {{7e6, 0, 0}, {0, 7.5e3, 0}},              // due east
                                   {{7e6, 0, 0}, {0, 0, -7.5e3}},             // due south
                                   {{0, 7e6, 0}, {0, 50, 7.5e3}},             // north over y
                                   {{0, -6.5e6, 2.5e6}, {-7.4e3, 300, 800}},  // west over -y
                                   {{6e5, 3e5, 6.97e6}, {7.5e3, 100, 0}}};    // near the pole

/// Range of about the wanted incidence angle (radians).
inline double SlantRange(const STATE& state, double height, double rpole, double incidence) {
  const double* const s = state.position;
  const double r = Length(s);
  const double ground = height + r / std::hypot(s[0] / EQUATOR, s[1] / EQUATOR, s[2] / rpole);
  return std::sqrt(r * r - std::pow(ground * std::sin(incidence), 2)) -
         ground * std::cos(incidence);
}

}  // namespace varnoth::test
