#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "foundation/constants.hpp"
#include "foundation/vector.hpp"

namespace varnoth::test {

inline constexpr double EQUATOR = 6378137.0, POLE = 6356752.3142, RADIANS = PI / 180;

struct STATE {
  double position[3], velocity[3];
};

inline constexpr STATE EQUATORIAL{{7e6, 0, 0}, {0, 3e3, 4e3}}, RISING{{7e6, 0, 0}, {5e3, 0, 0}};
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
  const double *const s = state.position, r = Length(s);
  const double ground = height + r / std::hypot(s[0] / EQUATOR, s[1] / EQUATOR, s[2] / rpole);
  return std::sqrt(r * r - std::pow(ground * std::sin(incidence), 2)) -
         ground * std::cos(incidence);
}

inline std::string Replaced(std::string text, const std::string& old, const char* by) {
  for (std::size_t at; (at = text.find(old)) != text.npos;) text.replace(at, old.size(), by);
  return text;
}

/// What a solver finds, and the laws for it.
struct TARGET {
  double point[3] = {-1, -1, -1}, latitude = -1, longitude = -1;
  double look[3], right[3], up[3];  ///< ray, across the track, unit normal; set by ExpectLaws

  /// The point has the range, the side, the velocity along the ray and the height above the
  /// ellipsoid of radii a and b for its coordinates: its foot along the normal lies on the
  /// ellipsoid, where the gradient has the normal's direction.
  void ExpectLaws(const STATE& s, double side, double range, double los, double a, double b,
                  double height, double bound) {
    Subtract(look, point, s.position);
    EXPECT_NEAR(Length(look), range, 1e-8);  // the stop criterion, 1e-9, and the rounding of 7e6 m
    EXPECT_NEAR(DotProduct(look, s.velocity) / range, los, 1e-8);
    CrossProduct(right, s.velocity, s.position);
    EXPECT_GT(DotProduct(look, right) * side, 0);
    const double phi = latitude * RADIANS, lambda = longitude * RADIANS, axes[3] = {a, a, b};
    up[0] = std::cos(phi) * std::cos(lambda);
    up[1] = std::cos(phi) * std::sin(lambda);
    up[2] = std::sin(phi);
    const double support = std::hypot(a * up[0], a * up[1], b * up[2]);
    bound += 9e-15 * height * height;  // 0.2 e⁶ h²/a, Bowring's latitude
    for (int i = 0; i < 3; ++i) {
      EXPECT_NEAR(point[i] - height * up[i], axes[i] * axes[i] * up[i] / support, bound);
    }
  }
};

}  // namespace varnoth::test
