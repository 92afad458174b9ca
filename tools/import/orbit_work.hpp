#pragma once

#include <vector>

#include "tools/import/interpolation.hpp"
#include "tools/import/moment.hpp"
#include "tools/vector_3.hpp"

namespace varnoth::tools {

// What an import does with state vectors, whatever file they come from. Failures are
// std::runtime_error; they name a vector by its epoch.

VECTOR_3 PositionOf(const STATE_VECTORS& orbit, std::size_t i);
VECTOR_3 VelocityOf(const STATE_VECTORS& orbit, std::size_t i);
/// Earth-fixed, from degrees and metres.
VECTOR_3 GroundPosition(double latitude, double longitude, double height, double equatorial_radius,
                        double polar_radius);

void AddVector(STATE_VECTORS& orbit, const MOMENT& epoch, const VECTOR_3& position,
               const VECTOR_3& velocity);

/// How many vectors lie ahead of a scene, at its first time included, and how many behind it.
struct COVERAGE {
  std::size_t ahead = 0;
  std::size_t behind = 0;
};
COVERAGE CoverageOf(const STATE_VECTORS& orbit, const MOMENT& first, const MOMENT& last);

/// Keeps the vectors that the interpolation needs, a few more for a second scene that lies a little
/// earlier or later, and none beyond; a remark tells of what was left out. `first` and `last` are
/// the times of the scene's first and last line.
void CutToScene(STATE_VECTORS& orbit, const MOMENT& first, const MOMENT& last,
                const INTERPOLATION& interpolation);

/// Fails for epochs that don't increase.
void CheckOrder(const STATE_VECTORS& orbit);
/// Fails for radii or speeds that no radar satellite has.
void CheckVectors(const STATE_VECTORS& orbit);

/// Printed epochs of an even grid are rounded, some by a microsecond more than others. Moves such
/// vectors along their velocity onto the even grid of whole microseconds; a remark tells how many
/// and by how much. True if the epochs are even now; others stay as they are.
bool MoveOntoGrid(STATE_VECTORS& orbit);

/// Velocity of each vector less the derivative of the positions there, m/s. The derivative is that
/// of the polynomial through the nine nearest positions, or through all of a shorter list.
std::vector<VECTOR_3> VelocityGaps(const STATE_VECTORS& orbit);

/// How far along the track, in metres, a target moves at a time if its zero-Doppler point is sought
/// with the positions' derivative instead of the listed velocities.
///
/// A velocity v + g meets the line of sight s to a target at a right angle where v alone has the
/// Doppler component v . s = -g . s; moving the target by d along the track changes v . s by |v| d,
/// so d = g . s / |v|.
double AlongTrackShift(const STATE_VECTORS& orbit, const std::vector<VECTOR_3>& gaps,
                       const MOMENT& moment, const VECTOR_3& target);

}  // namespace varnoth::tools
