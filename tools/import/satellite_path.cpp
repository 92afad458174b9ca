#include "tools/import/satellite_path.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace varnoth::tools {

SATELLITE_PATH::SATELLITE_PATH(const STATE_VECTORS& vectors, std::string interpolation) {
  constexpr std::size_t NEAREST = 9;
  const std::size_t count = vectors.epoch.size();
  if (count < 2) throw std::runtime_error("fewer than two state vectors");
  first = vectors.epoch[0];
  std::vector<double> times;
  std::vector<VECTOR_3> positions;
  std::vector<VECTOR_3> velocities;
  for (std::size_t i = 0; i < count; ++i) {
    times.push_back(1e-6 * static_cast<double>(MicrosecondsBetween(first, vectors.epoch[i])));
    positions.push_back(PositionOf(vectors, i));
    if (!vectors.velocity[0].empty()) velocities.push_back(VelocityOf(vectors, i));
    if (i > 0 && times[i] <= times[i - 1]) {
      throw std::runtime_error("the state vector at " + IsoTime(vectors.epoch[i]) +
                               " is not later than the one before it");
    }
  }
  duration = times.back();
  if (interpolation.empty()) {
    interpolation = count <= NEAREST ? "polynom" : "localpolynom_0_" + std::to_string(NEAREST);
  }
  orbit.SetSamples(interpolation.c_str(), times, positions, velocities);
}

SATELLITE_STATE SATELLITE_PATH::At(const MOMENT& moment) const {
  SATELLITE_STATE state{};
  GetState(orbit, 1e-6 * static_cast<double>(MicrosecondsBetween(first, moment)), state);
  return state;
}

double SATELLITE_PATH::SecondsClosestTo(const VECTOR_3& place) const {
  // The distance has one minimum within the minutes of a list: where the velocity is across the
  // line of sight. Halving an interval needs no second derivative.
  double low = 0.0;
  double high = duration;
  for (int i = 0; i < 48; ++i) {
    const double middle = (low + high) / 2;
    SATELLITE_STATE state{};
    GetState(orbit, middle, state);
    double approach = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      approach += state.velocity[axis] * (place[axis] - state.position[axis]);
    }
    (approach > 0 ? low : high) = middle;
  }
  return (low + high) / 2;
}

MOMENT SATELLITE_PATH::ClosestTo(const VECTOR_3& place) const {
  return Later(first, std::llround(SecondsClosestTo(place) * MICROSECONDS_OF_SECOND));
}

SATELLITE_STATE SATELLITE_PATH::StateClosestTo(const VECTOR_3& place, MOMENT& time) const {
  const double seconds = SecondsClosestTo(place);
  time = Later(first, std::llround(seconds * MICROSECONDS_OF_SECOND));
  SATELLITE_STATE state{};
  GetState(orbit, seconds, state);
  return state;
}

GROUND_POINT LocateSample(const SCENE& scene, const SATELLITE_PATH& path, const MOMENT& line,
                          double range_time, double height) {
  const SATELLITE_STATE state = path.At(line);
  GEOLOCATION_WORK work{};
  const double side = scene.look_direction.value == "left" ? -1.0 : 1.0;
  const GROUND_POINT point =
      LocateEcho({state.position, state.velocity, side, height, scene.polar_radius.value,
                  scene.equatorial_radius.value, range_time},
                 work);
  if (point.status != SOLVER_STATUS::FOUND) {
    throw std::runtime_error("no point of the ellipsoid has the range of the line at " +
                             IsoTime(line) + ": " + StatusText(point.status));
  }
  return point;
}

double RangeTime(const SCENE& scene, double sample) {
  return scene.first_range_time.value + sample / scene.range_sampling_frequency.value;
}

MOMENT LineTime(const SCENE& scene, double line) {
  return Later(scene.first_line.value,
               std::llround(line / scene.line_rate.value * MICROSECONDS_OF_SECOND));
}

}  // namespace varnoth::tools
