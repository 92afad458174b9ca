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
/// position (m), velocity (m/s) and acceleration (m/s²) between them, in the frame of the samples.
/// It takes every combination of time and result type, so that a caller need not know the concrete
/// class. SAMPLED_ORBIT, which implements the operations, describes them; here most do nothing and
/// leave their output untouched.
///
///     const ORBIT_BASE& orbit = *scene_orbit.core;
///     double velocity[3];
///     orbit.GetVelocity(12.5, velocity);  // s from the reference time
///     orbit.GetVelocity(UNIVERSAL_TIME("2004-01-14T10:11:12.5"), velocity);
///
/// An orbit made for one kind of time throws a text for another: "time operation not permitted"
/// (evaluation) or "not allowed time conversion" (GetReferenceTime). SetReferenceTime and
/// GetSampleTime do nothing then.
class ORBIT_BASE {
 public:
  ORBIT_BASE() = default;
  ORBIT_BASE(const ORBIT_BASE&) = delete;
  virtual ~ORBIT_BASE() = default;

  /// Builds the interpolators from the samples; `read` does this itself.
  virtual void Create() {}
  virtual int GetCoordinateCount() const { return value_keys.GetLength(); }
  virtual int GetVelocityCoordinateCount() const { return velocity_keys.GetLength(); }
  virtual int GetSampleCount() const { return 0; }
  virtual bool IsPoolOrbit() const { return false; }
  virtual bool IsMdbOrbit() const { return false; }
  /// Sets the names of the time column, of the value columns and of the velocity columns. The last
  /// two are lists, separated by any of ": /,(){}", and may be null.
  virtual void SetKeys(const char* param, const char* values, const char* velocities);
  /// Copies keys and settings; ORBIT copies the samples, too, and refuses a source of another
  /// class.
  virtual ORBIT_BASE& operator=(const ORBIT_BASE& source);

  virtual void GetReferenceTime(UNIVERSAL_TIME& time) const { time = UNIVERSAL_TIME(); }
  virtual void GetReferenceTime(MISSION_ELAPSED_TIME& time) const { time = MISSION_ELAPSED_TIME(); }
  virtual void GetReferenceTime(double& time) const { time = 0.0; }

  /// Loads the samples: from the file of a pool (kept for old callers), from a pool, or from a
  /// record file.
  virtual void ReadFromFile(const char* /*name*/) {}
  virtual void read(PARAMETER_POOL& /*pool*/) {}
  virtual void read(const STRING& /*root_path*/, int /*mission*/, int /*tape*/, int /*source*/,
                    int /*major*/, int /*minor*/, int /*channel*/, const STRING& /*file*/) {}

  /// Takes samples that lie in memory, as many positions as times, and velocities for the
  /// interpolations that use them; the first time becomes the reference time. GENERAL_ORBIT checks
  /// what it hands over. Throws ERROR_NOT_IMPLEMENTED, after a line at ALARM, for an orbit whose
  /// epochs are not seconds, and what the interpolators throw.
  virtual void SetSamples(std::span<const double> times, std::span<const COORDINATES> positions,
                          std::span<const COORDINATES> velocities);

  /// Order, 4 at first, and count of support points, 5 at first, of the interpolators that `Create`
  /// builds.
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

  /// Writes the curve of one coordinate and its samples to two text files. Only the form for double
  /// is implemented; the others do nothing.
  virtual void SavePolynomial(const char* /*file*/, int /*coordinate*/, int /*count*/,
                              float /*start*/, float /*end*/) const {}
  virtual void SavePolynomial(const char* /*file*/, int /*coordinate*/, int /*count*/,
                              double /*start*/, double /*end*/) const {}
  virtual void SavePolynomial(const char* /*file*/, int /*coordinate*/, int /*count*/,
                              long double /*start*/, long double /*end*/) const {}
  /// Logs the samples next to the interpolated values; here the title alone.
  virtual void Print(int level, const char* title) const;

 protected:
  STRING param_key;             ///< time column
  ARRAY<STRING> value_keys;     ///< one per coordinate
  ARRAY<STRING> velocity_keys;  ///< one per coordinate for Hermite orbits, else none
  int poly_fit_order = 4;
  int support_point_count = 5;
};

}  // namespace varnoth
