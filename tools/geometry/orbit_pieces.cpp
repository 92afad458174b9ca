#include "tools/geometry/orbit_pieces.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/constants.hpp"
#include "tools/check/orbit_samples.hpp"

namespace varnoth::tools {

ORBIT_PIECES::ORBIT_PIECES(const SCENE_ORBIT& source, double first, double last) {
  const std::vector<double> epochs = SamplesOf(source).times;
  for (std::size_t i = 1; i < epochs.size(); ++i) {
    const double begin = epochs[i - 1];
    const double end = epochs[i];
    if (!(end > begin) || end < first || begin > last) continue;
    const double middle = 0.5 * (begin + end);
    pieces.push_back(MakePiece(source, begin, middle));
    pieces.push_back(MakePiece(source, middle, end));
  }
  if (!pieces.empty()) {
    pieces_per_second = static_cast<double>(pieces.size()) / (End() - Begin());
  }
  is_faithful = std::all_of(pieces.begin(), pieces.end(),
                            [&](const PIECE& piece) { return IsFaithful(source, piece); });
}

/// Interpolates at the Chebyshev nodes, which keep off the epochs, and turns the Chebyshev series
/// into powers; see Press et al., Numerical Recipes, 5.8 and 5.10.
ORBIT_PIECES::PIECE ORBIT_PIECES::MakePiece(const SCENE_ORBIT& source, double begin, double end) {
  PIECE piece{.begin = begin, .end = end, .scale = 2.0 / (end - begin), .coefficients = {}};
  COORDINATES values[NODES];
  for (int j = 0; j < NODES; ++j) {
    const double time = piece.TimeOf(std::cos(PI * (j + 0.5) / NODES));
    varnoth::GetPosition(source, time, values[j].data());
  }
  double previous[NODES] = {};
  double current[NODES] = {1.0};  // T_k, by powers
  for (int k = 0; k < NODES; ++k) {
    for (int axis = 0; axis < 3; ++axis) {
      double sum = 0.0;
      for (int j = 0; j < NODES; ++j) {
        sum += values[j][axis] * std::cos(PI * k * (j + 0.5) / NODES);
      }
      const double factor = sum * (k == 0 ? 1.0 : 2.0) / NODES;
      for (int i = 0; i <= k; ++i) piece.coefficients[0][i][axis] += factor * current[i];
    }
    double next[NODES] = {};
    for (int i = 0; i < NODES; ++i) {
      const double shifted = i > 0 ? current[i - 1] : 0.0;
      next[i] = k == 0 ? shifted : 2.0 * shifted - previous[i];
    }
    std::copy_n(current, NODES, previous);
    std::copy_n(next, NODES, current);
  }
  for (int derivative = 1; derivative < 3; ++derivative) {
    for (int i = 0; i + 1 < NODES; ++i) {
      for (int axis = 0; axis < 3; ++axis) {
        piece.coefficients[derivative][i][axis] =
            (i + 1) * piece.scale * piece.coefficients[derivative - 1][i + 1][axis];
      }
    }
  }
  return piece;
}

bool ORBIT_PIECES::IsFaithful(const SCENE_ORBIT& source, const PIECE& piece) const {
  constexpr double POSITION_TOLERANCE = 1e-7;
  constexpr double VELOCITY_TOLERANCE = 1e-6;
  const auto is_near = [](const COORDINATES& a, const COORDINATES& b, double tolerance) {
    return std::equal(a.begin(), a.end(), b.begin(), [&](double x, double y) {
      return std::fabs(x - y) < tolerance;  // false for NaN
    });
  };
  for (const double u : {-0.999, -0.73, -0.31, 0.0, 0.3, 0.72, 0.999}) {
    const double time = piece.TimeOf(u);
    COORDINATES found{};
    COORDINATES wanted{};
    GetPosition(time, found.data());
    varnoth::GetPosition(source, time, wanted.data());
    if (!is_near(found, wanted, POSITION_TOLERANCE)) return false;
    GetVelocity(time, found.data());
    varnoth::GetVelocity(source, time, wanted.data());
    if (!is_near(found, wanted, VELOCITY_TOLERANCE)) return false;
  }
  return true;
}

/// The piece of a time; outside, the nearest one.
const ORBIT_PIECES::PIECE& ORBIT_PIECES::PieceAt(double time) const {
  // Exact for even epochs, near for others.
  const double guess = (time - Begin()) * pieces_per_second;
  const double last = static_cast<double>(pieces.size()) - 1.0;
  auto i = static_cast<std::size_t>(guess > 0.0 ? std::min(guess, last) : 0.0);
  while (i > 0 && time < pieces[i].begin) --i;
  while (i + 1 < pieces.size() && time >= pieces[i].end) ++i;
  return pieces[i];
}

void ORBIT_PIECES::Evaluate(int derivative, double time, double* result) const {
  const PIECE& piece = PieceAt(time);
  const double u = (time - 0.5 * (piece.begin + piece.end)) * piece.scale;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  for (int i = NODES - 1 - derivative; i >= 0; --i) {
    const COORDINATES& coefficient = piece.coefficients[derivative][i];
    x = x * u + coefficient[0];
    y = y * u + coefficient[1];
    z = z * u + coefficient[2];
  }
  result[0] = x;
  result[1] = y;
  result[2] = z;
}

void ORBIT_PIECES::GetPosition(const double& time, double* result) const {
  Evaluate(0, time, result);
}
void ORBIT_PIECES::GetVelocity(const double& time, double* result) const {
  Evaluate(1, time, result);
}
void ORBIT_PIECES::GetAcceleration(const double& time, double* result) const {
  Evaluate(2, time, result);
}

}  // namespace varnoth::tools
