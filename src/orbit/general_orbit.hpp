#pragma once

#include <memory>

#include "foundation/vector.hpp"
#include "orbit/orbit_base.hpp"

namespace varnoth {

/// The face of the orbits towards a caller: reads from a parameter pool which orbit this is and how
/// to interpolate it, builds the concrete object out of the catalogue, lets it load its samples,
/// and works out the offset between the caller's time axis and the object's.
///
/// An evaluation at the caller's time t (seconds) asks `core` at t + `time_offset`.
template <class T, class S>
class GENERAL_ORBIT {
 public:
  GENERAL_ORBIT() = default;
  GENERAL_ORBIT(const GENERAL_ORBIT&) = delete;
  virtual ~GENERAL_ORBIT() = default;
  /// Names of the columns, for `core`.
  virtual void SetKeys(const char* param_key, const char* value_keys, const char* velocity_keys);
  /// Makes a core of its own, a deep copy.
  virtual GENERAL_ORBIT& operator=(const GENERAL_ORBIT& source);

  /// The whole load. Reads "orbit_representation", "orbit_interpolation", "orbit_param_key",
  /// "orbit_value_key", for Hermite orbits "orbit_velocity_key", the samples, and
  /// "orbit_reference_time". Throws what the pool, the scanners and the interpolators throw.
  void read(PARAMETER_POOL& pool);
  /// The whole load without a pool: samples that lie in memory, which are copied. Then `times` (s)
  /// are on the caller's axis, whose zero may be anywhere.
  ///
  /// `interpolation` is a text such as "localhermite_4_4", as in a pool. The times increase, and
  /// every one has a position (m, Earth-fixed); the two Hermite interpolations need a velocity
  /// (m/s) for each as well, the others leave velocities out of account.
  ///
  /// Throws ERROR_ARGUMENT, behind a line at ALARM, for a text that is in no row, fewer than two
  /// samples, lists of different lengths, times that don't increase and coordinates that are no
  /// finite numbers; the orbit then is as it was. Throws what the interpolators throw.
  ///
  ///     SCENE_ORBIT orbit;
  ///     orbit.SetSamples("localhermite_4_4", times, positions, velocities);
  ///     orbit.core->GetPosition(times[0] + 3.0 + orbit.time_offset, position);
  void SetSamples(const STRING& interpolation, std::span<const double> times,
                  std::span<const COORDINATES> positions,
                  std::span<const COORDINATES> velocities = {});
  /// Picks the row of the catalogue and makes `core`. Throws ERROR_ARGUMENT, behind a line at
  /// ALARM, for texts that are in no row.
  void SelectCore(const STRING& representation, const STRING& interpolation);
  /// Id of an interpolation such as "everett_8" or "localpolynom(6,12)"; takes the order and the
  /// count of support points if the text has them. Throws ERROR_ARGUMENT.
  int ParseInterpolation(const STRING& text);
  /// Sets `time_offset` to this reference time, in seconds (no ":"), mission elapsed time (":"
  /// without "-") or universal time, minus that of `core`. Throws "not allowed time conversion" if
  /// the core has another kind of time.
  void SetReferenceTime(const STRING& text);

  std::unique_ptr<ORBIT_BASE> core;
  double time_offset = 0.0;  ///< s
  int orbit_type_id = 0;
  int interpolation_id = 0;
  int poly_fit_order = 4;
  int support_point_count = 5;

 private:
  void MakeCore();
  void ReadRecordFile(PARAMETER_POOL& pool);
};

/// The orbit of a scene: positions in metres, Earth-fixed.
using SCENE_ORBIT = GENERAL_ORBIT<double, VECTOR_3D<double>>;

extern template class GENERAL_ORBIT<double, VECTOR_3D<double>>;

}  // namespace varnoth
