#include <cmath>

#include "fuzz_target.hpp"
#include "orbit/general_orbit.hpp"

// In place of the kernels' own, which end the process (a link option): here it is a refusal.
extern "C" [[noreturn]] void __wrap__ZN7varnoth7nrerrorEPKc(const char* text) { throw text; }

namespace varnoth::fuzz {

/// A pool with an orbit: what loads can be evaluated and copied, or refuses. The
/// Hermite methods, which end the process outside their samples, take no part.
void FuzzOrbits(const std::string& input) {
  Accepts([&] { SCENE_ORBIT().ParseInterpolation(input.c_str()); });
  if (input.find("hermite") != input.npos || input.find("mdb") != input.npos) return;
  WriteFile("pool", input);
  PARAMETER_POOL pool("pool");
  SCENE_ORBIT orbit;
  if (!Accepts([&] { orbit.read(pool); })) return;
  for (const double time : {0.0, 3.25, 1e5}) {
    double state[3];
    Accepts([&] { orbit.core->GetPosition(time, state); });
    Accepts([&] { orbit.core->GetVelocity(time, state); });
    Accepts([&] { orbit.core->GetAcceleration(time, state); });
  }
  Accepts([&] {
    SCENE_ORBIT copy;
    copy = orbit;
  });
}

}  // namespace varnoth::fuzz
