#include "tools/stack/triangles.hpp"

#include <libqhull_r/qhull_ra.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <set>

namespace varnoth::tools {

namespace {

using EDGES = std::vector<std::pair<std::size_t, std::size_t>>;

/// Whether all points lie on a line, so that there is no triangle.
bool AreOnLine(const std::vector<PLANE_POINT>& points) {
  const PLANE_POINT& a = points.front();
  const PLANE_POINT& b = points.back();
  constexpr double FLAT = 1e-9;
  return std::all_of(points.begin(), points.end(), [&](const PLANE_POINT& p) {
    const double across = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    return std::abs(across) <= FLAT * (std::abs(b.x - a.x) + std::abs(b.y - a.y));
  });
}

/// Qhull's memory for one call.
class QHULL {
 public:
  QHULL() { qh_zero(&state, stderr); }
  ~QHULL() {
    int lost = 0;
    int pieces = 0;
    qh_freeqhull(&state, !qh_ALL);
    qh_memfreeshort(&state, &lost, &pieces);
  }
  QHULL(const QHULL&) = delete;
  QHULL& operator=(const QHULL&) = delete;

  qhT state{};
};

EDGES Chain(std::size_t count) {
  EDGES edges;
  for (std::size_t i = 1; i < count; ++i) edges.emplace_back(i - 1, i);
  return edges;
}

}  // namespace

EDGES TriangleEdges(const std::vector<PLANE_POINT>& points) {
  if (points.size() < 3 || AreOnLine(points)) return Chain(points.size());
  std::vector<coordT> coordinates;
  for (const PLANE_POINT& point : points) {
    coordinates.push_back(point.x);
    coordinates.push_back(point.y);
  }
  QHULL hull;
  qhT* const qh = &hull.state;  // the name that Qhull's macros take
  // d: Delaunay; Qt: triangles only; Qbb, Q12: scaled, wide facets allowed; Qz: circles allowed.
  char options[] = "qhull d Qt Qbb Qz Q12";
  if (qh_new_qhull(qh, 2, static_cast<int>(points.size()), coordinates.data(), False, options,
                   nullptr, stderr) != 0) {
    return Chain(points.size());
  }
  std::set<std::pair<std::size_t, std::size_t>> edges;
  facetT* facet = nullptr;
  FORALLfacets {
    if (facet->upperdelaunay) continue;
    std::vector<std::size_t> corners;
    vertexT* vertex = nullptr;
    vertexT** vertexp = nullptr;
    FOREACHvertex_(facet->vertices) {
      corners.push_back(static_cast<std::size_t>(qh_pointid(qh, vertex->point)));
    }
    for (const std::size_t a : corners) {
      for (const std::size_t b : corners) {
        if (a < b) edges.emplace(a, b);
      }
    }
  }
  return {edges.begin(), edges.end()};
}

}  // namespace varnoth::tools
