#pragma once

#include "geometry/ground_point.hpp"
#include "orbit/scene_orbit.hpp"
#include "tools/import/orbit_work.hpp"

namespace varnoth::tools {

/// Where a satellite is between its state vectors, by a pool's interpolation; without one, by the
/// polynomial through the nine nearest positions, or through all of a shorter list. Epochs must
/// increase; throws std::runtime_error for fewer than two vectors.
class SATELLITE_PATH {
 public:
  explicit SATELLITE_PATH(const STATE_VECTORS& vectors, std::string interpolation = "");

  SATELLITE_STATE At(const MOMENT& moment) const;
  /// At the least distance from a place, to the microsecond, not beyond the vectors.
  MOMENT ClosestTo(const VECTOR_3& place) const;
  /// The state there, not rounded to a microsecond; sets the time, which is.
  SATELLITE_STATE StateClosestTo(const VECTOR_3& place, MOMENT& time) const;

 private:
  double SecondsClosestTo(const VECTOR_3& place) const;

  MOMENT first;
  double duration = 0.0;  ///< s
  SCENE_ORBIT orbit;
};

/// The point on a scene's ellipsoid, raised by a height, that the sample with a two-way time shows
/// in the line of a moment. Throws std::runtime_error if there is none.
GROUND_POINT LocateSample(const SCENE& scene, const SATELLITE_PATH& path, const MOMENT& line,
                          double range_time, double height = 0.0);

/// Two-way time of a sample.
double RangeTime(const SCENE& scene, double sample);
/// Time of a line.
MOMENT LineTime(const SCENE& scene, double line);

}  // namespace varnoth::tools
