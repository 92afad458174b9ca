#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace varnoth::tools {

struct PLANE_POINT {
  double x = 0.0;
  double y = 0.0;
};

/// The edges of the Delaunay triangles over points with increasing x: pairs of their places, the
/// lower one first, sorted. Points on a line are joined one to the next.
std::vector<std::pair<std::size_t, std::size_t>> TriangleEdges(
    const std::vector<PLANE_POINT>& points);

}  // namespace varnoth::tools
