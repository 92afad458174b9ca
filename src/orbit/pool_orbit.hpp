#pragma once

#include "orbit/orbit.hpp"

namespace varnoth {

/// An orbit whose samples stand in a parameter pool as parallel lists: one of epochs (numbers, or
/// texts for the two kinds of time text), one of values per coordinate and, for Hermite orbits, one
/// of derivatives per coordinate.
template <class T, class S, class I, class P>
class POOL_ORBIT : public ORBIT<T, S, I, P> {
 public:
  bool IsPoolOrbit() const override { return true; }
  ORBIT_BASE& operator=(const ORBIT_BASE& source) override;
  /// Loads the samples of the keys that SetKeys gave; the first epoch becomes the reference time.
  /// Throws what the pool, the time scanners and the interpolators throw, and ERROR_DATA for a
  /// value list that is shorter than the epoch list. On a failure the samples may stand half
  /// filled.
  void read(PARAMETER_POOL& pool) override;
  using ORBIT_BASE::read;
  void ReadFromFile(const char* name) override;

 private:
  ARRAY<S> ReadEpochs(PARAMETER_POOL& pool) const;
  /// The list of a key, which must have an entry for every epoch.
  static ARRAY<T> ReadValues(PARAMETER_POOL& pool, const STRING& key, int epoch_count);
};

}  // namespace varnoth
