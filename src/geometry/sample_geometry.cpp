#include "geometry/sample_geometry.hpp"

#include <cmath>

#include "foundation/constants.hpp"
#include "foundation/vector.hpp"

namespace varnoth {

namespace {

constexpr double C = SPEED_OF_LIGHT;

/// Angle in degrees at a satellite between the directions to the Earth's centre and to a target.
double LookAngle(const double satellite[3], const double target[3]) {
  double to_satellite[3] = {};
  Subtract(to_satellite, satellite, target);
  return std::acos(DotProduct(satellite, to_satellite) /
                   (Length(to_satellite) * Length(satellite))) *
         180.0 / PI;
}

/// Angle in degrees at a ground point between the ellipsoid's normal and the ray to a satellite.
double IncidenceAngle(const GROUND_POINT& point, const double satellite[3]) {
  const double latitude = point.latitude * PI / 180.0;
  const double longitude = point.longitude * PI / 180.0;
  const double normal[3] = {std::cos(latitude) * std::cos(longitude),
                            std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
  double to_satellite[3] = {};
  Subtract(to_satellite, satellite, point.position);
  return std::acos(DotProduct(normal, to_satellite) / Length(to_satellite)) * 180.0 / PI;
}

/// Two-way travel time of the echo that the slave receives, s.
double BistaticDelay(const PAIR_CONSTANTS& pair, double line_time, const double target[3],
                     BISTATIC_SEARCH& search, double& closest_time) {
  double velocity_squared = 0.0;
  double delay = 0.0;
  search.EvaluateMonostatic(velocity_squared, closest_time, delay, target, *pair.slave_orbit,
                            line_time, 0.0, pair.tell_search);
  // How long the target stays in the slave's azimuth band, s.
  const double span =
      0.25 * pair.slave_bandwidth * C * C * delay / (velocity_squared * pair.slave_frequency);
  search.Evaluate(velocity_squared, closest_time, delay, target, *pair.slave_orbit, closest_time,
                  span, 0.0, *pair.master_orbit, nullptr, false);
  return delay;
}

/// A length (m) in cycles of a radar frequency (Hz).
double Cycles(double length, double frequency) { return length / (C / frequency); }

/// One-way path difference of a point in cycles, with both satellites at fixed positions.
double DualPassCycles(const PAIR_CONSTANTS& pair, const MASTER_LINE& line, const double slave[3],
                      const double point[3]) {
  return Cycles(Distance(line.position, point), pair.master_frequency) -
         Cycles(Distance(slave, point), pair.slave_frequency);
}

/// Path difference of a point in cycles, with the slave's path from its travel time (s).
double SinglePassCycles(const PAIR_CONSTANTS& pair, const MASTER_LINE& line, const double point[3],
                        double travel_time) {
  return Cycles(2.0 * Distance(line.position, point), pair.master_frequency) -
         Cycles(C * travel_time, pair.slave_frequency);
}

}  // namespace

MASTER_LINE LineAt(const SCENE_ORBIT& master_orbit, double time) {
  MASTER_LINE line{.time = time, .position = {}, .velocity = {}};
  GetPosition(master_orbit, time, line.position);
  GetVelocity(master_orbit, time, line.velocity);
  return line;
}

ECHO EchoOf(const PAIR_CONSTANTS& pair, const MASTER_LINE& line, double range_time, double height) {
  return {line.position, line.velocity, pair.look_direction, height,
          pair.rpole,    pair.requator, range_time};
}

void PlaceSlave(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair) {
  const CLOSEST_APPROACH found =
      FindClosestApproach(*pair.slave_orbit, sample.target.position, pair.slave_start);
  if (found.status != SOLVER_STATUS::FOUND && pair.tell_search != nullptr) pair.tell_search(found);
  sample.slave_time = found.time;
  GetPosition(*pair.slave_orbit, found.time, sample.slave_position);
}

void MeasureBaseline(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line) {
  sample.master_range = Distance(line.position, sample.target.position);
  sample.slave_range = Distance(sample.slave_position, sample.target.position);
  sample.range_difference = sample.master_range - sample.slave_range;
  sample.baseline = Distance(line.position, sample.slave_position);
  sample.effective_baseline = std::sqrt(sample.baseline * sample.baseline -
                                        sample.range_difference * sample.range_difference);
  if (pair.is_single_pass) sample.effective_baseline *= 0.5;
}

void FindSlave(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
               BISTATIC_SEARCH& search) {
  if (pair.is_single_pass) {
    sample.delay =
        BistaticDelay(pair, line.time, sample.target.position, search, sample.bistatic_time);
  } else {
    PlaceSlave(sample, pair);
  }
}

void CompleteSample(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                    BISTATIC_SEARCH& search) {
  const double* const target = sample.target.position;
  const double* const higher = sample.higher.position;
  const double* const slave = sample.slave_position;
  if (pair.is_single_pass) {
    const double cycles = SinglePassCycles(pair, line, target, sample.delay);
    double higher_time = 0.0;
    const double delay = BistaticDelay(pair, line.time, higher, search, higher_time);
    // Measure the baseline at the slave's own zero-Doppler time, not at the bistatic time.
    PlaceSlave(sample, pair);
    sample.phase = cycles;
    sample.phase_difference = SinglePassCycles(pair, line, higher, delay) - cycles;
  } else {
    const double cycles = DualPassCycles(pair, line, slave, target);
    sample.phase = 2.0 * cycles;
    // The slave stays at its position for the lower target.
    sample.phase_difference = 2.0 * (DualPassCycles(pair, line, slave, higher) - cycles);
  }

  MeasureBaseline(sample, pair, line);
  sample.master_look_angle = LookAngle(line.position, target);
  sample.slave_look_angle = LookAngle(slave, target);
  sample.slave_incidence = IncidenceAngle(sample.target, slave);
  const bool tells_heights = !(0.001 > std::fabs(sample.baseline));
  sample.metres_per_cycle =
      tells_heights ? -HEIGHT_STEP / sample.phase_difference : NO_HEIGHT_CONVERSION;
}

void SplitBaseline(SAMPLE_GEOMETRY& sample, const MASTER_LINE& line) {
  double b[3] = {};
  double sight[3] = {};
  double across[3] = {};
  Subtract(b, sample.slave_position, line.position);
  Subtract(sight, sample.target.position, line.position);
  sample.along_track = DotProduct(b, line.velocity) / Length(line.velocity);
  sample.parallel = DotProduct(b, sight) / Length(sight);
  CrossProduct(across, line.velocity, sight);
  // `across` points up or down, depending on the side of the target.
  const double part = DotProduct(b, across) / Length(across);
  sample.perpendicular = DotProduct(across, line.position) < 0.0 ? -part : part;
}

SAMPLE_GEOMETRY SampleGeometry(const PAIR_CONSTANTS& pair, const MASTER_LINE& line,
                               double range_time, double height, BISTATIC_SEARCH& search) {
  GEOLOCATION_WORK work;
  SAMPLE_GEOMETRY sample;
  sample.higher = LocateEcho(EchoOf(pair, line, range_time, HEIGHT_STEP + height), work);
  sample.target = LocateEcho(EchoOf(pair, line, range_time, height), work);
  for (const GROUND_POINT* point : {&sample.higher, &sample.target}) {
    if (point->status == SOLVER_STATUS::FOUND) continue;
    sample.target.status = point->status;
    return sample;
  }
  FindSlave(sample, pair, line, search);
  CompleteSample(sample, pair, line, search);
  SplitBaseline(sample, line);
  return sample;
}

}  // namespace varnoth
