#include "tools/stack/baseline.hpp"

#include <algorithm>

#include "geometry/sample_geometry.hpp"

namespace varnoth::tools {

BASELINE BaselineOf(const SATELLITE_STATE& master, const SATELLITE_STATE& slave,
                    const GROUND_POINT& point) {
  MASTER_LINE line{};
  std::copy_n(master.position, 3, line.position);
  std::copy_n(master.velocity, 3, line.velocity);
  SAMPLE_GEOMETRY sample;
  sample.target = point;
  std::copy_n(slave.position, 3, sample.slave_position);
  SplitBaseline(sample, line);
  // Of a scene with itself, 0 and not -0.
  return {sample.perpendicular + 0.0, sample.parallel + 0.0, sample.along_track + 0.0};
}

}  // namespace varnoth::tools
