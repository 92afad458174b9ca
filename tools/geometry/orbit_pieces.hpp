#pragma once

#include <vector>

#include "orbit/scene_orbit.hpp"

namespace varnoth::tools {

/// A scene's orbit over a stretch of time as polynomials, an orbit that costs a fifth of another
/// one. Between two neighbouring epochs every interpolation is one polynomial, or two that meet in
/// the middle; so each half of such an interval has a piece through ten values of the orbit. The
/// time is that of the scene.
class ORBIT_PIECES final : public ORBIT_BASE {
 public:
  /// Takes an orbit between its epochs, from `first` to `last` (s on the scene's axis) at most.
  /// Throws what the orbit throws.
  ORBIT_PIECES(const SCENE_ORBIT& source, double first, double last);

  using ORBIT_BASE::operator=;
  using ORBIT_BASE::GetAcceleration;
  using ORBIT_BASE::GetPosition;
  using ORBIT_BASE::GetVelocity;
  void GetPosition(const double& time, double* result) const override;
  void GetVelocity(const double& time, double* result) const override;
  void GetAcceleration(const double& time, double* result) const override;

  bool Covers(double time) const { return time >= Begin() && time <= End(); }
  double Begin() const { return pieces.empty() ? 0.0 : pieces.front().begin; }
  double End() const { return pieces.empty() ? -1.0 : pieces.back().end; }
  /// Whether the pieces are within 1e-7 m and 1e-6 m/s of the orbit everywhere. They are not for an
  /// orbit in single precision.
  bool IsFaithful() const { return is_faithful; }

 private:
  static constexpr int NODES = 10;
  struct PIECE {
    double begin;
    double end;
    double scale;  ///< from seconds to the interval's -1 to 1
    /// Of the powers, by derivative and power: position (m), velocity (m/s), acceleration (m/s²).
    COORDINATES coefficients[3][NODES];

    double TimeOf(double u) const { return 0.5 * (begin + end) + u / scale; }
  };

  static PIECE MakePiece(const SCENE_ORBIT& source, double begin, double end);
  bool IsFaithful(const SCENE_ORBIT& source, const PIECE& piece) const;
  const PIECE& PieceAt(double time) const;
  void Evaluate(int derivative, double time, double* result) const;

  std::vector<PIECE> pieces;
  double pieces_per_second = 0.0;
  bool is_faithful = true;
};

}  // namespace varnoth::tools
