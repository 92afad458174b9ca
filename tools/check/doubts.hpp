#pragma once

#include <functional>

#include "driver/flat_earth_sweep.hpp"
#include "tools/check/pool_inputs.hpp"

namespace varnoth::tools {

/// Takes what is found.
using TELL_FINDING = std::function<void(const FINDING&)>;

// What a run takes without a word, found by measuring. All floating-point traps are held off.

/// About a loaded orbit: the order of its epochs, radii and speeds, velocities against positions,
/// what the interpolation loses, and the times that the scene needs of it.
void TellOrbitDoubts(const varnoth::SCENE& scene, ROLE role, const STEP_POOLS& pools,
                     const TELL_FINDING& tell);

/// About an orbit that everett refuses: which epoch is how far off an even grid.
void TellUnevenGrid(const SCENE_ORBIT& orbit, const POOL_INPUT& pool, const TELL_FINDING& tell);

/// About the pair: reference times in single pass, and the first range against the satellite's
/// height.
void TellPairDoubts(const varnoth::SCENE& scene, const STEP_POOLS& pools, const TELL_FINDING& tell);

/// About the calculated pair: the slave's times against its orbit, the distance of the satellites,
/// and the scene's place against the centre that the master's pool states.
void TellSweepDoubts(const varnoth::SCENE& scene, const SWEEP& sweep, const STEP_POOLS& pools,
                     const TELL_FINDING& tell);

}  // namespace varnoth::tools
