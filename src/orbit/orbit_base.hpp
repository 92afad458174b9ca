#pragma once

#include <array>
#include <span>

#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "foundation/vector.hpp"
#include "orbit/evaluation_entries.hpp"
#include "pool/parameter_pool.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"

namespace varnoth {

/// A position (m) or a velocity (m/s), Earth-fixed.
using COORDINATES = std::array<double, 3>;

/// The interface of all orbits: a table of satellite states over time, and a way to evaluate
/// position, velocity and acceleration between them. It takes every combination of time and result
/// type, so that a caller needs not know the concrete class. What an operation does is told where
/// it is implemented, at SAMPLED_ORBIT; here most do nothing and leave their output untouched.
///
/// Operations for a kind of time that the orbit is not made for throw a text: "time operation not
/// permitted" (evaluation) or "not allowed time conversion" (reference time).
class ORBIT_BASE {
 public:
  ORBIT_BASE() = default;
  ORBIT_BASE(const ORBIT_BASE&) = delete;
  virtual ~ORBIT_BASE() = default;

  /// Builds the interpolators from the samples.
  virtual void Create() {}
  virtual int GetCoordinateCount() const { return value_keys.GetLength(); }
  virtual int GetVelocityCoordinateCount() const { return velocity_keys.GetLength(); }
  virtual int GetSampleCount() const { return 0; }
  virtual bool IsPoolOrbit() const { return false; }
  virtual bool IsMdbOrbit() const { return false; }
  /// Names of the time column, of the value columns and of the velocity columns. The last two are
  /// lists, separated by any of ": /,(){}", and may be null.
  virtual void SetKeys(const char* param, const char* values, const char* velocities);
  /// Copies keys and settings. The source must be of the same concrete class.
  virtual ORBIT_BASE& operator=(const ORBIT_BASE& source);

  virtual void GetReferenceTime(UNIVERSAL_TIME& time) const { time = UNIVERSAL_TIME(); }
  virtual void GetReferenceTime(MISSION_ELAPSED_TIME& time) const { time = MISSION_ELAPSED_TIME(); }
  virtual void GetReferenceTime(double& time) const { time = 0.0; }

  /// Loads the samples: from a pool's file (kept for old callers), a pool, or a record file.
  virtual void ReadFromFile(const char* /*name*/) {}
  virtual void read(PARAMETER_POOL& /*pool*/) {}
  virtual void read(const STRING& /*root_path*/, int /*mission*/, int /*tape*/, int /*source*/,
                    int /*major*/, int /*minor*/, int /*channel*/, const STRING& /*file*/) {}

  /// Takes samples that lie in memory, as many positions as times, and velocities for the
  /// interpolations that use them; the first time becomes the reference time. GENERAL_ORBIT checks
  /// what it hands over. Throws ERROR_NOT_IMPLEMENTED, behind a line at ALARM, for an orbit whose
  /// epochs are not seconds, and what the interpolators throw.
  virtual void SetSamples(std::span<const double> times, std::span<const COORDINATES> positions,
                          std::span<const COORDINATES> velocities);

  virtual void SetPolyFitOrder(int order) { poly_fit_order = order; }
  virtual void SetSupportPointCount(int count) { support_point_count = count; }
  virtual void SetReferenceTime(const UNIVERSAL_TIME& /*time*/) {}
  virtual void SetReferenceTime(const MISSION_ELAPSED_TIME& /*time*/) {}

#define VARNOTH_DECLARE(GROUP, TIME, OUTPUT) \
  virtual void GROUP(const TIME& /*time*/, OUTPUT /*result*/) const {}
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetPosition)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetVelocity)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetAcceleration)
#undef VARNOTH_DECLARE

  virtual void GetSampleTime(int /*index*/, UNIVERSAL_TIME& /*time*/) const {}
  virtual void GetSampleTime(int /*index*/, MISSION_ELAPSED_TIME& /*time*/) const {}
#define VARNOTH_DECLARE(OPERATION, OUTPUT) \
  virtual void OPERATION(int /*index*/, OUTPUT /*result*/) const {}
  VARNOTH_SAMPLE_ENTRIES(VARNOTH_DECLARE)
#undef VARNOTH_DECLARE

  /// Writes one coordinate's curve and support points to two text files.
  virtual void SavePolynomial(const char* /*file*/, int /*coordinate*/, int /*count*/,
                              float /*start*/, float /*end*/) const {}
  virtual void SavePolynomial(const char* /*file*/, int /*coordinate*/, int /*count*/,
                              double /*start*/, double /*end*/) const {}
  virtual void SavePolynomial(const char* /*file*/, int /*coordinate*/, int /*count*/,
                              long double /*start*/, long double /*end*/) const {}
  /// Logs the samples beside what the interpolators make of them.
  virtual void Print(int level, const char* title) const;

 protected:
  STRING param_key;             ///< time column
  ARRAY<STRING> value_keys;     ///< one per coordinate
  ARRAY<STRING> velocity_keys;  ///< one per coordinate for Hermite orbits, else none
  int poly_fit_order = 4;
  int support_point_count = 5;
};

}  // namespace varnoth
