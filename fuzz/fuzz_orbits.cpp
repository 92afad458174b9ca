#include <cfenv>
#include <cmath>
#include <filesystem>

#include "fuzz_target.hpp"
#include "orbit/general_orbit.hpp"
#include "system/floating_point_traps.hpp"

// In place of the kernels' own, which end the process (a link option): here it is a refusal.
extern "C" [[noreturn]] void __wrap__ZN7varnoth7nrerrorEPKc(const char* text) { throw text; }

namespace varnoth::fuzz {

namespace {

/// Seconds of a sample from the reference time; no number if the orbit has another element type.
template <class ELEMENT>
double TimeOf(const SCENE_ORBIT& orbit, int index) {
  ELEMENT time = NAN;
  orbit.core->GetRelativeSampleTime(index, time);
  return time;
}

double TimeOf(const SCENE_ORBIT& orbit, int index) {
  const double time = TimeOf<double>(orbit, index);
  return std::isnan(time) ? TimeOf<float>(orbit, index) : time;
}

/// Whether an orbit is one that a satellite might fly and that any method may be asked of: no
/// arithmetic on it may overflow or meet a division by zero.
bool IsReasonable(const SCENE_ORBIT& orbit) {
  const int count = orbit.core->GetSampleCount();
  if (count < 3 || orbit.core->GetCoordinateCount() != 3 || orbit.poly_fit_order > 6) return false;
  for (int i = 0; i < count; ++i) {
    double position[3] = {};
    float narrow[3] = {};
    orbit.core->GetSample(i, position);
    orbit.core->GetSample(i, narrow);
    for (int c = 0; c < 3; ++c) {
      if (!std::isless(std::fabs(position[c] + narrow[c]), 1e9)) return false;
    }
    if (i == 0) continue;
    const double gap = TimeOf(orbit, i) - TimeOf(orbit, i - 1);
    if (!std::isgreater(gap, 0.5) || !std::isless(gap, 100)) return false;
  }
  return true;
}

/// Any time within and, but for the method that ends the process there, outside of the samples.
void Evaluate(const SCENE_ORBIT& orbit, bool inside_only, bool is_reasonable) {
  const int last = orbit.core->GetSampleCount() - 1;
  const double first_gap = TimeOf(orbit, 1) - TimeOf(orbit, 0);
  for (const double time : {TimeOf(orbit, 0) + 0.3 * first_gap, TimeOf(orbit, last) - 0.01, 1e5}) {
    if (inside_only && time > TimeOf(orbit, last)) continue;
    double state[9] = {};
    const bool given = Accepts([&] {
      orbit.core->GetPosition(time, state);
      orbit.core->GetVelocity(time, state + 3);
      orbit.core->GetAcceleration(time, state + 6);
    });
    for (const double part : state) {
      Require(!given || !is_reasonable || std::isfinite(part), "a reasonable orbit has states");
    }
  }
}

}  // namespace

/// A pool with an orbit; behind lines of "%" alone the definition and the content of its record
/// file. What loads can be evaluated and copied, or refuses. The Hermite methods, which end the
/// process outside their samples and at no numbers, are asked of reasonable orbits alone.
void FuzzOrbits(const std::string& input) {
  Accepts([&] { SCENE_ORBIT().ParseInterpolation(input.c_str()); });
  const std::string separator = "\n%\n";
  const std::size_t definition = input.find(separator);
  const std::size_t records = input.rfind(separator);
  WriteFile("pool", input.substr(0, definition) + "\n");
  if (records != definition) {
    constexpr const char* DIRECTORY = "KOVA1/hddc_BRNR012/dt_005.007/pri";
    WriteFile("format.dat", input.substr(definition + 3, records - definition - 2));
    std::filesystem::create_directories(DIRECTORY);
    WriteFile((std::string(DIRECTORY) + "/orbit").c_str(), input.substr(records + 3));
  }
  const auto load = [](SCENE_ORBIT& orbit) {
    PARAMETER_POOL pool("pool");
    orbit.read(pool);
  };
  const bool traps = fegetexcept() != 0;
  const bool is_hermite = input.find("hermite") != input.npos;
  bool is_reasonable = false;
  {
    const HELD_TRAPS no_traps;
    SCENE_ORBIT orbit;
    if (!Accepts([&] { load(orbit); })) return;
    if (orbit.core->GetSampleCount() < 2) return;
    is_reasonable = IsReasonable(orbit);
    if (!is_reasonable && is_hermite) return;
    Evaluate(orbit, is_hermite, is_reasonable);
  }
  if (traps && !is_reasonable) return;  // for an absurd orbit a trap may be the right answer
  SCENE_ORBIT orbit;
  load(orbit);
  SCENE_ORBIT copy;
  copy = orbit;
  Evaluate(copy, is_hermite, is_reasonable);
}

}  // namespace varnoth::fuzz
