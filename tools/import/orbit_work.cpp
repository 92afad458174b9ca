#include "tools/import/orbit_work.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <stdexcept>

namespace varnoth::tools {

namespace {

constexpr double MICROSECOND = 1e-6;

/// Microseconds of the epochs after the first one.
std::vector<std::int64_t> TimesOf(const STATE_VECTORS& orbit) {
  std::vector<std::int64_t> times;
  for (const MOMENT& epoch : orbit.epoch) {
    times.push_back(MicrosecondsBetween(orbit.epoch[0], epoch));
  }
  return times;
}

template <class LIST>
void Cut(LIST& list, std::size_t from, std::size_t to) {
  list = LIST(list.begin() + static_cast<std::ptrdiff_t>(from),
              list.begin() + static_cast<std::ptrdiff_t>(to));
}

}  // namespace

VECTOR_3 PositionOf(const STATE_VECTORS& orbit, std::size_t i) {
  return {orbit.position[0][i], orbit.position[1][i], orbit.position[2][i]};
}

VECTOR_3 VelocityOf(const STATE_VECTORS& orbit, std::size_t i) {
  return {orbit.velocity[0][i], orbit.velocity[1][i], orbit.velocity[2][i]};
}

VECTOR_3 GroundPosition(double latitude, double longitude, double height, double equatorial_radius,
                        double polar_radius) {
  const double phi = latitude * std::numbers::pi / 180;
  const double lambda = longitude * std::numbers::pi / 180;
  const double flatness = polar_radius * polar_radius / (equatorial_radius * equatorial_radius);
  const double s = std::sin(phi);
  const double normal = equatorial_radius / std::sqrt(1 - (1 - flatness) * s * s);
  return {(normal + height) * std::cos(phi) * std::cos(lambda),
          (normal + height) * std::cos(phi) * std::sin(lambda), (normal * flatness + height) * s};
}

void AddVector(STATE_VECTORS& orbit, const MOMENT& epoch, const VECTOR_3& position,
               const VECTOR_3& velocity) {
  orbit.epoch.push_back(epoch);
  for (std::size_t i = 0; i < 3; ++i) {
    orbit.position[i].push_back(position[i]);
    orbit.velocity[i].push_back(velocity[i]);
  }
}

COVERAGE CoverageOf(const STATE_VECTORS& orbit, const MOMENT& first, const MOMENT& last) {
  COVERAGE coverage;
  for (const MOMENT& epoch : orbit.epoch) {
    if (MicrosecondsBetween(epoch, first) >= 0) ++coverage.ahead;
    if (MicrosecondsBetween(last, epoch) >= 0) ++coverage.behind;
  }
  return coverage;
}

void CutToScene(STATE_VECTORS& orbit, const MOMENT& first, const MOMENT& last,
                const INTERPOLATION& interpolation) {
  constexpr std::size_t SPARE = 2;
  constexpr std::size_t LEAST = 7;
  const std::size_t kept = std::max(interpolation.vectors_beyond + SPARE, LEAST);
  const std::size_t count = orbit.epoch.size();
  const COVERAGE coverage = CoverageOf(orbit, first, last);
  const std::size_t from = coverage.ahead - std::min(coverage.ahead, kept);
  const std::size_t to = count - (coverage.behind - std::min(coverage.behind, kept));
  if (to - from == count) return;
  Cut(orbit.epoch, from, to);
  for (auto& list : orbit.position) Cut(list, from, to);
  for (auto& list : orbit.velocity) Cut(list, from, to);
  orbit.remarks.push_back("vectors " + std::to_string(from + 1) + " to " + std::to_string(to) +
                          " of " + std::to_string(count));
}

void CheckOrder(const STATE_VECTORS& orbit) {
  for (std::size_t i = 1; i < orbit.epoch.size(); ++i) {
    if (MicrosecondsBetween(orbit.epoch[i - 1], orbit.epoch[i]) <= 0) {
      throw std::runtime_error("the state vector at " + IsoTime(orbit.epoch[i]) +
                               " is not later than the one before it");
    }
  }
}

void CheckVectors(const STATE_VECTORS& orbit) {
  constexpr double RADII[2] = {6.5e6, 8.5e6};   // m
  constexpr double SPEEDS[2] = {6.0e3, 8.5e3};  // m/s, Earth-fixed
  for (std::size_t i = 0; i < orbit.epoch.size(); ++i) {
    const std::string at = " at " + IsoTime(orbit.epoch[i]);
    const double radius = Norm(PositionOf(orbit, i));
    const double speed = Norm(VelocityOf(orbit, i));
    char text[160];
    if (!(radius > RADII[0] && radius < RADII[1])) {
      std::snprintf(text, sizeof text, "the satellite%s is %.1f km from the Earth's centre",
                    at.c_str(), radius / 1000);
      throw std::runtime_error(std::string(text) + ": no radar satellite is");
    }
    if (!(speed > SPEEDS[0] && speed < SPEEDS[1])) {
      std::snprintf(text, sizeof text, "the satellite%s has a speed of %.1f m/s", at.c_str(),
                    speed);
      throw std::runtime_error(std::string(text) + ": no radar satellite has");
    }
  }
}

bool MoveOntoGrid(STATE_VECTORS& orbit) {
  constexpr std::int64_t LARGEST = 20;  // microseconds; what is farther off is no rounding
  const std::size_t count = orbit.epoch.size();
  if (count < 3) return true;
  const std::vector<std::int64_t> times = TimesOf(orbit);
  const std::int64_t step =
      std::llround(static_cast<double>(times.back()) / static_cast<double>(count - 1));
  std::vector<std::int64_t> offsets;
  for (std::size_t i = 0; i < count; ++i) {
    offsets.push_back(times[i] - static_cast<std::int64_t>(i) * step);
  }
  // Most epochs are right, so the grid that most of them stand on is the best guess.
  std::vector<std::int64_t> sorted = offsets;
  std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(count / 2),
                   sorted.end());
  const std::int64_t grid = sorted[count / 2];
  std::size_t moved = 0;
  std::int64_t farthest = 0;
  double distance = 0.0;
  for (const std::int64_t offset : offsets) {
    moved += offset != grid;
    farthest = std::max(farthest, std::abs(offset - grid));
  }
  if (farthest > LARGEST) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::int64_t late = offsets[i] - grid;
    if (late == 0) continue;
    orbit.epoch[i] = Later(orbit.epoch[i], -late);
    for (int axis = 0; axis < 3; ++axis) {
      orbit.position[axis][i] -= orbit.velocity[axis][i] * static_cast<double>(late) * MICROSECOND;
    }
    distance = std::max(
        distance, std::abs(static_cast<double>(late)) * MICROSECOND * Norm(VelocityOf(orbit, i)));
  }
  if (moved > 0) {
    char text[160];
    std::snprintf(text, sizeof text,
                  "%zu of %zu epochs were up to %d us off the even grid: these vectors were moved "
                  "along their velocity by up to %.4f m",
                  moved, count, static_cast<int>(farthest), distance);
    orbit.remarks.emplace_back(text);
  }
  return true;
}

std::vector<VECTOR_3> VelocityGaps(const STATE_VECTORS& orbit) {
  constexpr std::size_t WINDOW = 9;
  const std::vector<std::int64_t> times = TimesOf(orbit);
  const std::size_t count = times.size();
  const std::size_t window = std::min(WINDOW, count);
  std::vector<VECTOR_3> gaps;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t start = std::min(i - std::min(i, window / 2), count - window);
    const auto seconds = [&](std::size_t a, std::size_t b) {
      return static_cast<double>(times[a] - times[b]) * MICROSECOND;
    };
    VECTOR_3 gap = VelocityOf(orbit, i);
    const VECTOR_3 here = PositionOf(orbit, i);
    // The derivative of the j-th Lagrange polynomial at its node i; those of all add up to 0.
    for (std::size_t j = start; j < start + window; ++j) {
      if (j == i) continue;
      double weight = 1 / seconds(j, i);
      for (std::size_t k = start; k < start + window; ++k) {
        if (k != i && k != j) weight *= seconds(i, k) / seconds(j, k);
      }
      const VECTOR_3 there = PositionOf(orbit, j);
      for (std::size_t axis = 0; axis < 3; ++axis) gap[axis] -= weight * (there[axis] - here[axis]);
    }
    gaps.push_back(gap);
  }
  return gaps;
}

double AlongTrackShift(const STATE_VECTORS& orbit, const std::vector<VECTOR_3>& gaps,
                       const MOMENT& moment, const VECTOR_3& target) {
  // Straight lines between the vectors are good to 100 m here, and the gaps change slowly.
  const auto next =
      std::find_if(orbit.epoch.begin() + 1, orbit.epoch.end() - 1,
                   [&](const MOMENT& e) { return MicrosecondsBetween(e, moment) < 0; });
  const auto b = static_cast<std::size_t>(next - orbit.epoch.begin());
  const std::size_t a = b - 1;
  const double part = static_cast<double>(MicrosecondsBetween(orbit.epoch[a], moment)) /
                      static_cast<double>(MicrosecondsBetween(orbit.epoch[a], orbit.epoch[b]));
  VECTOR_3 sight{};
  VECTOR_3 gap{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::vector<double>& list = orbit.position[axis];
    sight[axis] = target[axis] - list[a] - part * (list[b] - list[a]);
    gap[axis] = gaps[a][axis] + part * (gaps[b][axis] - gaps[a][axis]);
  }
  return Dot(gap, sight) / Norm(VelocityOf(orbit, a));
}

}  // namespace varnoth::tools
