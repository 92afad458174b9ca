#pragma once

#include "orbit/orbit.hpp"

namespace varnoth {

/// An orbit whose samples are in a parameter pool as parallel lists: one of epochs (seconds, or
/// texts for UNIVERSAL_TIME and MISSION_ELAPSED_TIME), one of values (m) per coordinate and, for
/// Hermite orbits, one of derivatives (m/s) per coordinate.
///
///     POOL_ORBIT<double, double, EVERETT<double>, POINT<double>> orbit;
///     orbit.SetKeys("t", "x,y,z", nullptr);
///     orbit.SetPolyFitOrder(8);
///     orbit.read(pool);
///
/// GENERAL_ORBIT makes these objects by name. T, S, I and P are those of ORBIT.
template <class T, class S, class I, class P>
class POOL_ORBIT : public ORBIT<T, S, I, P> {
 public:
  bool IsPoolOrbit() const override { return true; }
  /// Throws as the assignment of ORBIT does.
  ORBIT_BASE& operator=(const ORBIT_BASE& source) override;
  /// Loads the samples of the keys that SetKeys was given; the first epoch becomes the reference
  /// time. A value list may be longer than the epoch list. Throws what the pool, the time scanners
  /// and the interpolators throw; ERROR_DATA, after a line at ALARM, for a value list that is
  /// shorter than the epoch list; and for Hermite orbits a text if the counts of value and velocity
  /// columns differ. A failure can leave the samples half filled.
  void read(PARAMETER_POOL& pool) override;
  using ORBIT_BASE::read;
  /// Opens the pool, reads it and closes it; deprecated. Throws as `read` and the pool do.
  void ReadFromFile(const char* name) override;

 private:
  ARRAY<S> ReadEpochs(PARAMETER_POOL& pool) const;
  /// The list of a key, which must have a value for every epoch.
  static ARRAY<T> ReadValues(PARAMETER_POOL& pool, const STRING& key, int epoch_count);
};

}  // namespace varnoth
