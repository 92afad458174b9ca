#include "tools/check/doubts.hpp"

#include <algorithm>
#include <cmath>
#include <exception>
#include <initializer_list>
#include <limits>
#include <span>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "foundation/split.hpp"
#include "system/floating_point_traps.hpp"
#include "tools/check/orbit_samples.hpp"

namespace varnoth::tools {

namespace {

constexpr double EARTH_RADIUS = 6371e3;  // m, mean
/// Interpolation of positions and velocities to compare with; docs/geometry.md has its errors.
constexpr const char* REFERENCE = "localpolynom_0_9";
constexpr std::size_t REFERENCE_MARGIN = 4;

double Distance(const double* a, const double* b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

double Length(const COORDINATES& a) { return std::hypot(a[0], a[1], a[2]); }

std::string Metres(double length) {
  return std::fabs(length) < 1.0 ? Short(length * 1e3) + " mm" : Short(length) + " m";
}

const char* FirstTimeKey(ROLE role) {
  return role == MASTER ? "master_first_az_time" : "slave_first_az_time";
}

/// Runs a measurement that must neither end the check nor trap: what it can't measure, the run
/// itself tells.
template <class MEASUREMENT>
void Measure(MEASUREMENT measurement) {
  const HELD_TRAPS held;
  try {
    measurement();
  } catch (const ERROR_EXCEPTION&) {  // NOLINT(bugprone-empty-catch): see above
  } catch (const char*) {             // NOLINT(bugprone-empty-catch)
  } catch (const std::exception&) {   // NOLINT(bugprone-empty-catch)
  }
}

class ORBIT_DOUBTS {
 public:
  ORBIT_DOUBTS(const varnoth::SCENE& state, ROLE which, const STEP_POOLS& pools,
               const TELL_FINDING& to)
      : scene(state),
        role(which),
        pool(pools.scene[which]),
        insar(pools.insar),
        orbit(which == MASTER ? state.master_orbit : state.slave_orbit),
        words(pool.Text("orbit_interpolation")),
        samples(SamplesOf(orbit)),
        tell(to) {}

  void Tell() {
    if (!TellEpochs()) return;
    TellPlaces();
    TellSampleTimes();
    const double first = role == MASTER ? scene.master_first_az_time : scene.slave_first_az_time;
    const double last = role == MASTER ? scene.master_last_az_time : scene.slave_last_az_time;
    CutNear(first, last);
    if (TellCoverage(first, last)) {
      Measure([&] { TellLostDigits({first, 0.5 * (first + last), last}); });
    }
    Measure([&] { TellVelocities(); });
  }

  /// Whether the orbit covers the times.
  bool TellCoverage(double first, double last) {
    const std::size_t margin = words.Margin();
    if (samples.times.size() < 2 * margin + 2) {
      Add("orbit-short", "orbit_interpolation", pool,
          std::to_string(samples.times.size()) + " samples are few for " +
              pool.Text("orbit_interpolation"),
          "use more samples, or a lower order", true);
      return false;
    }
    const double begin = samples.times[margin];
    const double end = samples.times[samples.times.size() - 1 - margin];
    const double least = std::min(first, last);
    const double most = std::max(first, last);
    if (least >= begin && most <= end) return true;
    const double missing = std::max(begin - least, most - end);
    const std::string name = role == MASTER ? "master" : "slave";
    Add("orbit-coverage", FirstTimeKey(role), insar,
        "the " + name + "'s orbit serves " + Short(begin) + " to " + Short(end) +
            " s, the scene needs " + Short(least) + " to " + Short(most) + " s: " + Short(missing) +
            " s are not covered",
        "use samples that reach further, or correct times and reference time", true);
    return false;
  }

 private:
  void Add(const char* code, const std::string& key, const POOL_INPUT& where,
           const std::string& message, const std::string& remedy, bool is_cause,
           std::size_t line = 0) {
    tell({.level = SEVERITY::WARNING,
          .code = code,
          .file = where.file,
          .line = line > 0 ? line : where.LineOf(key),
          .key = key,
          .message = message,
          .remedy = remedy,
          .is_cause = is_cause});
  }

  bool TellEpochs() {
    const std::string key = pool.Text("orbit_param_key");
    for (std::size_t i = 1; i < samples.times.size(); ++i) {
      const double step = samples.times[i] - samples.times[i - 1];
      if (step > 0) continue;
      Add(step == 0 ? "epoch-twice" : "epochs-unordered", key, pool,
          "epoch " + std::to_string(i + 1) + " of " + std::to_string(samples.times.size()) +
              (step == 0 ? " is that before it" : " does not follow the one before it"),
          "order the epochs, each of them once", true, pool.LineOfElement(key, i));
      return false;
    }
    return true;
  }

  /// Radii and speeds of satellites with a radar: some 200 to 2000 km high, in the Earth's frame.
  void TellPlaces() {
    constexpr double LEAST_RADIUS = 6.5e6;
    constexpr double MOST_RADIUS = 8.4e6;
    constexpr double LEAST_SPEED = 6.3e3;
    constexpr double MOST_SPEED = 8.4e3;
    constexpr double LONG_STEP = 100.0;  // s; over a longer one the chord is no measure
    const std::string first_list(
        Split(pool.Text("orbit_value_key").c_str(), ": /,(){}").begin()[0].c_str());
    for (std::size_t i = 0; i < samples.times.size(); ++i) {
      const double radius = Length(samples.positions[i]);
      const double step = i > 0 ? samples.times[i] - samples.times[i - 1] : 0.0;
      const double speed =
          i > 0 ? Distance(samples.positions[i].data(), samples.positions[i - 1].data()) / step
                : LEAST_SPEED;
      const std::string sample = "sample " + std::to_string(i + 1);
      if (!(radius >= LEAST_RADIUS && radius <= MOST_RADIUS)) {
        Add("radius", first_list, pool,
            sample + " is " + Short(radius / 1e3) + " km from the Earth's centre",
            "correct the positions: metres, Earth-fixed", true, pool.LineOfElement(first_list, i));
        return;
      }
      if (step <= LONG_STEP && !(speed >= LEAST_SPEED && speed <= MOST_SPEED)) {
        Add("speed", first_list, pool, sample + " is reached at " + Short(speed) + " m/s",
            "correct positions and epochs: metres, Earth-fixed, seconds", true,
            pool.LineOfElement(first_list, i));
        return;
      }
    }
  }

  /// The derivatives of everett divide by the distance to the sample.
  void TellSampleTimes() {
    if (words.name != "everett" || words.order == 0 || samples.times.size() < 2) return;
    const double step =
        (samples.times.back() - samples.times[0]) / static_cast<double>(samples.times.size() - 1);
    const double first = role == MASTER ? scene.master_first_az_time : scene.slave_first_az_time;
    for (const double part : {0.0, 0.5, 1.0}) {
      if (role == SLAVE && part > 0) break;  // the search begins at the first line's time
      const double time = first + part * (scene.master_last_az_time - scene.master_first_az_time);
      const double steps = (time - samples.times[0]) / step;
      if (std::fabs(steps - std::round(steps)) > 1e-12 * std::max(1.0, std::fabs(steps))) continue;
      const char* const line = part == 0.0 ? "first" : part == 1.0 ? "last" : "middle";
      Add("time-on-sample", FirstTimeKey(role), insar,
          std::string("the ") + line + " line's time, " + Short(time) +
              " s, is that of an orbit sample, and everett divides by the distance to it",
          "move the epochs or the scene by some microseconds, or use localpolynom_0_9", true);
    }
  }

  /// Chooses the samples about the scene: comparing all of a long orbit would take long.
  void CutNear(double first, double last) {
    constexpr std::ptrdiff_t MOST = 30;
    const auto& times = samples.times;
    const auto size = static_cast<std::ptrdiff_t>(times.size());
    const auto from = std::lower_bound(times.begin(), times.end(), first) - times.begin();
    const auto to = std::upper_bound(times.begin(), times.end(), last) - times.begin();
    near_begin = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(from - MOST, 0, size));
    near_end = static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(std::min(to, from + 10 * MOST) + MOST, 0, size));
  }

  /// An orbit through the samples about the scene, in double precision.
  void Load(SCENE_ORBIT& other, const char* interpolation) const {
    const std::size_t count = near_end - near_begin;
    other.SetSamples(interpolation, std::span(samples.times).subspan(near_begin, count),
                     std::span(samples.positions).subspan(near_begin, count));
  }

  bool LiesInside(double time) const {
    return near_end > near_begin + 2 * REFERENCE_MARGIN &&
           time >= samples.times[near_begin + REFERENCE_MARGIN] &&
           time <= samples.times[near_end - 1 - REFERENCE_MARGIN];
  }

  /// Largest distance (m) between two orbits at some times within the samples.
  double Difference(const SCENE_ORBIT& one, const SCENE_ORBIT& other,
                    std::initializer_list<double> times) const {
    double most = 0.0;
    for (const double time : times) {
      if (!LiesInside(time)) continue;
      double a[3];
      double b[3];
      GetPosition(one, time, a);
      GetPosition(other, time, b);
      most = std::max(most, Distance(a, b));
    }
    return most;
  }

  void TellLostDigits(std::initializer_list<double> times) {
    constexpr double NOTEWORTHY = 1e-3;  // m
    SCENE_ORBIT reference;
    Load(reference, REFERENCE);
    SCENE_ORBIT coarser;
    Load(coarser, "localpolynom_0_7");
    const std::string text = pool.Text("orbit_interpolation");
    // Rounded to single precision, samples scatter, and denser ones scatter as much.
    const double own = samples.is_single ? 0.0 : Difference(reference, coarser, times);
    if (own > NOTEWORTHY) {
      Add("samples-coarse", pool.Text("orbit_param_key"), pool,
          "samples every " + Short(samples.Gap()) + " s leave the positions between them " +
              Metres(own) + " uncertain",
          "use denser samples", false);
    } else if (const double lost = Difference(orbit, reference, times); lost > NOTEWORTHY) {
      Add("interpolation-inexact", "orbit_interpolation", pool,
          text + (samples.is_single ? " in single precision" : "") + " is " + Metres(lost) +
              " off a polynomial through the nine nearest samples",
          "use everett_8 or localpolynom_0_9, in double precision", false);
    }
  }

  /// The velocities of three lists; empty without them.
  std::vector<COORDINATES> Velocities(const std::string& keys) const {
    std::vector<COORDINATES> velocities(samples.times.size());
    const ARRAY<STRING> names = Split(keys.c_str(), ": /,(){}");
    if (names.GetLength() != 3) return {};
    for (std::size_t c = 0; c < 3; ++c) {
      const JSON& value = pool.Value(names.begin()[c].c_str());
      if (!value.is_object() || value["values"].size() < velocities.size()) return {};
      for (std::size_t i = 0; i < velocities.size(); ++i) {
        const JSON& element = value["values"][i];
        if (!element.is_number()) return {};
        velocities[i][c] = element.get<double>();
      }
    }
    return velocities;
  }

  void TellVelocities() {
    constexpr double NOTEWORTHY = 3e-3;  // m/s; a microsecond of jitter makes some 1e-3
    const std::vector<COORDINATES> velocities = Velocities(pool.Text("orbit_velocity_key"));
    if (velocities.empty() || samples.is_single) return;
    SCENE_ORBIT reference;
    Load(reference, REFERENCE);
    double most = 0.0;
    std::size_t at = 0;
    for (std::size_t i = near_begin; i < near_end; ++i) {
      if (!LiesInside(samples.times[i])) continue;
      double velocity[3];
      GetVelocity(reference, samples.times[i], velocity);
      const double difference = Distance(velocity, velocities[i].data());
      if (difference > most) {
        most = difference;
        at = i;
      }
    }
    if (most <= NOTEWORTHY) return;
    const double range = insar.Number("master_first_rg_time") * SPEED_OF_LIGHT * 0.5;
    Add("velocities", "orbit_velocity_key", pool,
        "the velocity of sample " + std::to_string(at + 1) + " is " + Short(most * 1e3) +
            " mm/s off the derivative of the positions, up to " +
            Metres(most / Length(velocities[at]) * range) + " along the track",
        "use a precise orbit", false);
  }

  const varnoth::SCENE& scene;
  ROLE role;
  const POOL_INPUT& pool;
  const POOL_INPUT& insar;
  const SCENE_ORBIT& orbit;
  INTERPOLATION_WORDS words;
  ORBIT_SAMPLES samples;
  std::size_t near_begin = 0;
  std::size_t near_end = 0;
  const TELL_FINDING& tell;
};

FINDING Doubt(const char* code, const std::string& key, const POOL_INPUT& where,
              const std::string& message, const std::string& remedy, bool is_cause = false) {
  return {.level = SEVERITY::WARNING,
          .code = code,
          .file = where.file,
          .line = where.LineOf(key),
          .key = key,
          .message = message,
          .remedy = remedy,
          .is_cause = is_cause};
}

/// The reference time in seconds, from any beginning; only differences mean something.
double ReferenceSeconds(const std::string& text) {
  if (text.find(':') == text.npos) return std::strtod(text.c_str(), nullptr);
  if (text.find('-') == text.npos) {
    return (MISSION_ELAPSED_TIME(text.c_str()) - MISSION_ELAPSED_TIME()).ToSeconds();
  }
  return (UNIVERSAL_TIME(text.c_str()) - UNIVERSAL_TIME(0.0)).ToSeconds();
}

void TellReferenceTimes(const varnoth::SCENE& scene, const STEP_POOLS& pools,
                        const TELL_FINDING& tell) {
  constexpr const char* KEY = "orbit_reference_time";
  const std::string master = pools.scene[MASTER].Text(KEY);
  const std::string slave = pools.scene[SLAVE].Text(KEY);
  if (!scene.IsSinglePass() || master == slave) return;
  const double apart = ReferenceSeconds(slave) - ReferenceSeconds(master);
  if (apart == 0) return;
  tell(Doubt("reference-times", KEY, pools.scene[SLAVE],
             "'" + slave + "' is " + Short(apart) + " s after the master's '" + master +
                 "', and in single pass a time of one orbit is asked of the other",
             "count both from one time"));
}

void TellRange(const varnoth::SCENE& scene, const STEP_POOLS& pools, const TELL_FINDING& tell) {
  double position[3] = {};
  GetPosition(scene.master_orbit, scene.master_first_az_time, position);
  const double radius = std::hypot(position[0], position[1], position[2]);
  const double height = radius - EARTH_RADIUS;
  const double horizon = std::sqrt(std::max(radius * radius - EARTH_RADIUS * EARTH_RADIUS, 0.0));
  const double range = scene.master_first_rg_time * SPEED_OF_LIGHT * 0.5;
  constexpr double ROUGH = 25e3;  // m; the Earth's radius is not the same everywhere
  constexpr const char* KEY = "master_first_rg_time";
  if (range < height - ROUGH) {
    const bool is_one_way = 2.0 * range > height;
    tell(Doubt("range-short", KEY, pools.insar,
               "a range of " + Short(range / 1e3) + " km, from a satellite " + Short(height / 1e3) +
                   " km high, meets no ground",
               is_one_way ? "give the time there and back; this looks like one way"
                          : "check the time and its unit, s",
               true));
  } else if (range > horizon + ROUGH) {
    tell(Doubt("range-long", KEY, pools.insar,
               "a range of " + Short(range / 1e3) + " km reaches beyond the horizon, " +
                   Short(horizon / 1e3) + " km",
               "give the time there and back, in seconds", true));
  }
}

}  // namespace

void TellOrbitDoubts(const varnoth::SCENE& scene, ROLE role, const STEP_POOLS& pools,
                     const TELL_FINDING& tell) {
  Measure([&] { ORBIT_DOUBTS(scene, role, pools, tell).Tell(); });
}

void TellUnevenGrid(const SCENE_ORBIT& orbit, const POOL_INPUT& pool, const TELL_FINDING& tell) {
  Measure([&] {
    const bool is_loaded = orbit.core != nullptr && orbit.core->GetSampleCount() > 2;
    if (!is_loaded || !pool.Text("orbit_interpolation").starts_with("everett")) return;
    const std::vector<double> times = SamplesOf(orbit).times;
    const double step = (times.back() - times[0]) / static_cast<double>(times.size() - 1);
    double most = 0.0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
      const double off = times[i] - times[0] - static_cast<double>(i) * step;
      if (std::fabs(off) <= std::fabs(most)) continue;
      most = off;
      at = i;
    }
    constexpr double TOLERANCE = 1e-8;  // of a step, as everett's own
    if (!(std::fabs(most) > TOLERANCE * std::fabs(step))) return;
    const std::string key = pool.Text("orbit_param_key");
    FINDING finding =
        Doubt("grid-uneven", key, pool,
              "epoch " + std::to_string(at + 1) + " is " + Short(most) + " s off an even grid of " +
                  Short(step) + " s, which everett needs",
              "move the epochs onto the grid, along the velocity, or use localpolynom_0_9", true);
    finding.line = pool.LineOfElement(key, at);
    tell(finding);
  });
}

void TellPairDoubts(const varnoth::SCENE& scene, const STEP_POOLS& pools,
                    const TELL_FINDING& tell) {
  Measure([&] { TellReferenceTimes(scene, pools, tell); });
  Measure([&] { TellRange(scene, pools, tell); });
}

void TellSweepDoubts(const varnoth::SCENE& scene, const SWEEP& sweep, const STEP_POOLS& pools,
                     const TELL_FINDING& tell) {
  Measure([&] {
    double first = std::numeric_limits<double>::infinity();
    double last = -first;
    double distance = 0.0;
    for (const auto& line : sweep.samples) {
      for (const SAMPLE_GEOMETRY& sample : line) {
        const double time = scene.IsSinglePass() ? sample.bistatic_time : sample.slave_time;
        first = std::min(first, time);
        last = std::max(last, time);
        distance = std::max(distance, sample.baseline);
      }
    }
    ORBIT_DOUBTS(scene, SLAVE, pools, tell).TellCoverage(first, last);
    constexpr double FAR_APART = 20e3;  // m; orbits of one track keep within some hundred
    if (distance > FAR_APART) {
      tell(Doubt("baseline", "", pools.scene[SLAVE],
                 "the satellites pass " + Short(distance / 1e3) + " km from each other",
                 "pair scenes of one track, with times that count from their own references"));
    }
  });
  Measure([&] {
    const double latitude = pools.scene[MASTER].Number("center_latitude");
    const double longitude = pools.scene[MASTER].Number("center_longitude");
    const CORNERS corners = corners_of(sweep);
    const double mean_latitude =
        0.25 *
        static_cast<double>(corners.early_az_near_rg_latitude + corners.early_az_far_rg_latitude +
                            corners.late_az_near_rg_latitude + corners.late_az_far_rg_latitude);
    const auto& mid = sweep.samples[FIRST_LINE][MID_SAMPLE].target;
    const double east =
        std::remainder(longitude - sweep.samples[LAST_LINE][MID_SAMPLE].target.longitude, 360.0);
    const double west = std::remainder(longitude - mid.longitude, 360.0);
    constexpr double DEGREE = EARTH_RADIUS * PI / 180.0;
    const double off = std::hypot(latitude - mean_latitude,
                                  0.5 * (east + west) * std::cos(latitude * PI / 180.0)) *
                       DEGREE;
    // The pair may be a part of the scene that the centre belongs to.
    constexpr double FAR_OFF = 150e3;  // m
    if (!(off > FAR_OFF)) return;
    tell(Doubt("scene-center", "center_latitude", pools.scene[MASTER],
               "the scene's centre comes out " + Short(off / 1e3) + " km from the stated one",
               "check first times, line rate, look direction and orbit"));
  });
}

}  // namespace varnoth::tools
