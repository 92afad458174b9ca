#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/stack/stack_scenes.hpp"

namespace varnoth::tools {

/// Two scenes of a stack, by their places in it.
struct STACK_PAIR {
  std::size_t master = 0;
  std::size_t slave = 0;
};

enum class NETWORK {
  ALL,       ///< every two scenes
  NEAREST,   ///< each scene with the next ones in time
  STAR,      ///< the reference with each other scene
  DELAUNAY,  ///< the triangles over time and perpendicular baseline
};

struct NETWORK_REQUEST {
  NETWORK kind = NETWORK::ALL;
  int nearest = 1;  ///< how many next ones
  std::optional<double> max_days;
  std::optional<double> max_baseline;  ///< amount of the perpendicular part, m
};

/// Coherence that a model leaves to a pair, 0 to 1: less with the perpendicular baseline, down to
/// nothing at the critical one, and with time, down to nothing after five years (Hooper, Segall and
/// Zebker 2007, Persistent scatterer interferometric synthetic aperture radar, equation 1).
double ModelledCoherence(const SCENE_STACK& stack, const STACK_PAIR& pair);

/// The scene that leaves the most coherence to its pairs with all others.
std::size_t BestReference(const SCENE_STACK& stack);

/// The pairs of a network, in the order of the masters' and then the slaves' dates. The master is
/// the earlier scene; in a star it is the reference.
std::vector<STACK_PAIR> MakeNetwork(const SCENE_STACK& stack, std::size_t reference,
                                    const NETWORK_REQUEST& request);

/// The scenes that pairs hold together, a list for each part of the network, in the order of dates.
std::vector<std::vector<std::size_t>> PartsOf(std::size_t scenes,
                                              const std::vector<STACK_PAIR>& pairs);

BASELINE BaselineOf(const SCENE_STACK& stack, const STACK_PAIR& pair);
/// From the master's to the slave's date.
std::int64_t DaysOf(const SCENE_STACK& stack, const STACK_PAIR& pair);

}  // namespace varnoth::tools
