#include <algorithm>
#include <cfenv>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "fuzz_target.hpp"
#include "orbit/general_orbit.hpp"
#include "system/floating_point_traps.hpp"

// A link option puts this in place of the kernels' own `nrerror`, which ends the process: here a
// failure is a refusal.
extern "C" [[noreturn]] void __wrap__ZN7varnoth7nrerrorEPKc(const char* text) { throw text; }

namespace varnoth::fuzz {

namespace {

/// Seconds of a sample from the reference time: the entry of the orbit's own element type gives
/// them.
double TimeOf(const SCENE_ORBIT& orbit, int index) {
  double time = 0;
  float narrow = 0;
  orbit.core->GetRelativeSampleTime(index, time);
  orbit.core->GetRelativeSampleTime(index, narrow);
  return time + narrow;
}

/// Whether an orbit is one that a satellite might fly, so that any method gives a state between its
/// samples: no arithmetic on it may overflow or divide by zero. Its times are small enough for a
/// float to tell a tenth of a step.
bool IsReasonable(const SCENE_ORBIT& orbit) {
  const int count = orbit.core->GetSampleCount();
  if (count < 3 || orbit.core->GetCoordinateCount() != 3 || orbit.poly_fit_order > 6) return false;
  if (!std::isless(std::fabs(TimeOf(orbit, 0)), 1e5)) return false;
  for (int i = 0; i < count; ++i) {
    double position[3] = {};
    float narrow[3] = {};
    orbit.core->GetSample(i, position);
    orbit.core->GetSample(i, narrow);
    for (int c = 0; c < 3; ++c) {
      if (!std::isless(std::fabs(position[c] + narrow[c]), 1e9)) return false;
    }
    const double gap = i > 0 ? TimeOf(orbit, i) - TimeOf(orbit, i - 1) : 1;
    if (!std::isgreater(gap, 0.5) || !std::isless(gap, 100)) return false;
  }
  return true;
}

/// Writes the pool of an orbit. In the input, the definition and the content of its record file
/// follow the pool, each after a line of "%" alone.
void WritePool(const std::string& input) {
  constexpr const char* DIRECTORY = "KOVA1/hddc_BRNR012/dt_005.007/pri";
  const std::string separator = "\n%\n";
  const std::size_t definition = input.find(separator);
  WriteFile("pool", input.substr(0, definition) + "\n");
  // A search from the end costs a comparison per byte, which the sanitizers make dear.
  if (definition == input.npos) return;
  const std::size_t records = input.rfind(separator);
  if (records != definition) {
    WriteFile("format.dat", input.substr(definition + 3, records - definition - 2));
    static const bool IS_MADE = std::filesystem::create_directories(DIRECTORY);
    Require(IS_MADE, "a folder of its own");
    WriteFile((std::string(DIRECTORY) + "/orbit").c_str(), input.substr(records + 3));
  }
}

void Load(SCENE_ORBIT& orbit) {
  PARAMETER_POOL pool("pool");
  orbit.read(pool);
}

template <class T>
bool HoldsNumbers(PARAMETER_POOL& pool, const std::string& key) {
  ARRAY<T> values;
  return Accepts([&] { pool.Read(key.c_str(), values); }) &&
         std::all_of(values.begin(), values.end(),
                     [](T value) { return std::isless(std::fabs(value), T{1e9}); });
}

/// Whether the pool has the velocities that a Hermite orbit needs; those of a record file count as
/// none.
bool HasVelocities() {
  PARAMETER_POOL pool("pool");
  STRING keys;
  if (!Accepts([&] { pool.Read("orbit_velocity_key", keys); })) return false;
  std::string names = keys.c_str();
  std::replace(names.begin(), names.end(), ',', ' ');
  std::istringstream words(names);
  for (std::string name; words >> name;) {
    if (!HoldsNumbers<double>(pool, name) && !HoldsNumbers<float>(pool, name)) return false;
  }
  return true;
}

}  // namespace

/// A copy of an orbit that loads gives states, or refuses. Only reasonable orbits meet the Hermite
/// methods, which end the process outside their samples and at values that are not numbers.
void FuzzOrbits(const std::string& input) {
  const bool is_hermite = input.find("hermite") != input.npos;
  const bool has_traps = fegetexcept() != 0;
  bool is_reasonable = false;
  SCENE_ORBIT copy;
  WritePool(input);
  {
    const HELD_TRAPS no_traps;
    SCENE_ORBIT orbit;
    if (!Accepts([&] { Load(orbit); }) || orbit.core->GetSampleCount() < 2) return;
    // A local method whose pieces have one sample each is outside its samples everywhere else.
    is_reasonable =
        IsReasonable(orbit) && (!is_hermite || (orbit.support_point_count > 1 && HasVelocities()));
    // For an absurd orbit a trap may be the right answer.
    if (!is_reasonable && (is_hermite || has_traps)) return;
    copy = orbit;
  }
  if (has_traps) {
    SCENE_ORBIT orbit;
    Load(orbit);
    copy = orbit;
  }
  const double first = TimeOf(copy, 0);
  const double step = TimeOf(copy, 1) - first;
  const double last = TimeOf(copy, copy.core->GetSampleCount() - 1);
  // Off the samples and their continuation, where Everett's derivatives divide by zero.
  for (const double time : {first + 0.3 * step, last - 0.1 * step,
                            is_hermite ? last - 0.2 * step : first + 1000.3 * step}) {
    double state[9] = {};
    const bool is_given = Accepts([&] {
      copy.core->GetPosition(time, state);
      copy.core->GetVelocity(time, state + 3);
      copy.core->GetAcceleration(time, state + 6);
    });
    for (const double part : state) {
      Require(!is_given || !is_reasonable || std::isfinite(part), "a reasonable orbit has states");
    }
  }
}

}  // namespace varnoth::fuzz
