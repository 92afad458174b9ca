#pragma once

#include "geometry/sample_geometry.hpp"
#include "tools/geometry/columns.hpp"
#include "tools/geometry/orbit_pieces.hpp"
#include "tools/geometry/pair_loading.hpp"
#include "tools/geometry/point_source.hpp"

namespace varnoth::tools {

/// What a thread needs of its own.
struct POINT_WORK {
  GEOLOCATION_WORK geolocation;
  BISTATIC_SEARCH search;
  MASTER_LINE line{.time = std::nan(""), .position = {}, .velocity = {}};  ///< of the last point
};

/// The geometry of points of a pair, which must outlive it.
class POINT_GEOMETRY {
 public:
  /// Throws what the orbits throw.
  explicit POINT_GEOMETRY(const LOADED_PAIR& pair);
  POINT_GEOMETRY(const POINT_GEOMETRY&) = delete;  // `constants` lead to its own orbits
  POINT_GEOMETRY& operator=(const POINT_GEOMETRY&) = delete;

  /// Sets the row of a point. Null, or why the point has no geometry. Any number of threads may
  /// call it; a row does not depend on the points before it. Throws what the orbits throw.
  const char* Find(const IMAGE_POINT& point, POINT_WORK& work, ROW& row) const;

 private:
  const varnoth::SCENE& scene;
  PAIR_CONSTANTS constants;  ///< with `orbits`
  bool is_faithful = true;   ///< whether the pieces give all digits
  const ORBIT_PIECES* pieces[2] = {};
  SCENE_ORBIT orbits[2];  ///< on the pieces
};

}  // namespace varnoth::tools
