#pragma once

#include <memory>

#include "foundation/vector.hpp"
#include "orbit/orbit_base.hpp"

namespace varnoth {

/// The orbit as a caller sees it: reads from a parameter pool which orbit this is and how to
/// interpolate it, makes the concrete object from the catalogue, lets it load its samples, and
/// works out the offset between the caller's time axis and the object's.
///
///     PARAMETER_POOL pool("scene.par");
///     SCENE_ORBIT orbit;
///     orbit.read(pool);
///     double position[3];
///     GetPosition(orbit, 1000.0, position);  // of orbit/scene_orbit.hpp
///
/// An evaluation at the caller's time t (s) asks `core` at t + `time_offset`. T and S are the types
/// of a coordinate and of a position.
template <class T, class S>
class GENERAL_ORBIT {
 public:
  GENERAL_ORBIT() = default;
  GENERAL_ORBIT(const GENERAL_ORBIT&) = delete;
  virtual ~GENERAL_ORBIT() = default;
  /// Passes the names of the columns to `core`, which must exist.
  virtual void SetKeys(const char* param_key, const char* value_keys, const char* velocity_keys);
  /// Copies the settings and makes a core of its own, a deep copy. A source without a core leaves
  /// this core as it is. Throws ERROR_ARGUMENT, after a line at ALARM, for ids that are not in the
  /// catalogue, and what the interpolators throw.
  virtual GENERAL_ORBIT& operator=(const GENERAL_ORBIT& source);

  /// Loads everything. Reads "orbit_representation", "orbit_interpolation", "orbit_param_key",
  /// "orbit_value_key", for Hermite orbits "orbit_velocity_key", the samples, and
  /// "orbit_reference_time". The samples of a pool orbit are in the same pool; an orbit of a record
  /// file reads the eight keys of its place, from "root_path" to "mdb_orbit_data_file". Throws what
  /// SelectCore, SetReferenceTime, the pool and the `read` of the concrete orbit throw.
  void read(PARAMETER_POOL& pool);
  /// Loads everything without a pool: copies samples that lie in memory. `times` (s) are on the
  /// caller's axis, whose zero may be anywhere.
  ///
  /// `interpolation` is a text such as "localhermite_4_4", as in a pool. The times increase, and
  /// every one has a position (m, Earth-fixed); the two Hermite interpolations need a velocity
  /// (m/s) for each as well, the others ignore velocities.
  ///
  /// Throws ERROR_ARGUMENT, after a line at ALARM, for a text that is in no row of the catalogue,
  /// fewer than two samples, lists of different lengths, times that don't increase and coordinates
  /// that are no finite numbers; the orbit then is as it was. Throws what the interpolators throw.
  ///
  ///     SCENE_ORBIT orbit;
  ///     orbit.SetSamples("localhermite_4_4", times, positions, velocities);
  ///     orbit.core->GetPosition(times[0] + 3.0 + orbit.time_offset, position);
  void SetSamples(const STRING& interpolation, std::span<const double> times,
                  std::span<const COORDINATES> positions,
                  std::span<const COORDINATES> velocities = {});
  /// Picks the row of the catalogue and makes `core`. Throws ERROR_ARGUMENT, after a line at
  /// ALARM, for texts that are in no row; there is no core then.
  void SelectCore(const STRING& representation, const STRING& interpolation);
  /// Id of an interpolation such as "everett_8" or "localpolynom(6,12)". If the text has them, sets
  /// `poly_fit_order` and `support_point_count`, even if it then throws. Throws ERROR_ARGUMENT,
  /// after a line at ALARM, for a name that is not in the catalogue.
  int ParseInterpolation(const STRING& text);
  /// Sets `time_offset` (s) to this reference time minus that of `core`, which must exist. The text
  /// is in seconds (no ":"), mission elapsed time (":" without "-") or universal time. Text without
  /// a number counts as 0 s; a faulty mission elapsed time counts up to its fault, with a line in
  /// the log; a faulty universal time throws ERROR_DATA after a line in the log. Throws the text
  /// "not allowed time conversion" if the core has another kind of time.
  void SetReferenceTime(const STRING& text);

  std::unique_ptr<ORBIT_BASE> core;
  double time_offset = 0.0;  ///< from the caller's time to that of `core`, s
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
