#include "tools/report/footprints.hpp"

#include <algorithm>
#include <cmath>

namespace varnoth::tools {

namespace {

/// The longitude that means the same and lies within half a turn of another one.
double Beside(double longitude, double other) {
  return other + std::remainder(longitude - other, 360.0);
}

}  // namespace

std::optional<RING> Footprint(const PAIR_RECORD& record) {
  RING ring;
  for (const char* const corner :
       {"early_az_near", "early_az_far", "late_az_far", "late_az_near"}) {
    MAP_POINT point = {record.Number(std::string(corner) + "_rg_longitude"),
                       record.Number(std::string(corner) + "_rg_latitude")};
    if (!(std::fabs(point.longitude) <= 360.0) || !(std::fabs(point.latitude) <= 90.0)) {
      return std::nullopt;
    }
    point.longitude = Beside(point.longitude, ring.empty() ? 0.0 : ring[0].longitude);
    ring.push_back(point);
  }
  return ring;
}

std::optional<MAP_BOX> Surroundings(const std::vector<PAIR_RECORD>& records) {
  std::optional<MAP_BOX> box;
  double first_longitude = 0.0;
  for (const PAIR_RECORD& record : records) {
    std::optional<RING> ring = Footprint(record);
    if (!ring) continue;
    if (!box) {
      const MAP_POINT& start = ring->front();
      first_longitude = start.longitude;
      box = MAP_BOX{start.longitude, start.longitude, start.latitude, start.latitude};
    }
    const double start = Beside(ring->front().longitude, first_longitude);
    for (const MAP_POINT& point : *ring) {
      const double longitude = Beside(point.longitude, start);
      box->west = std::min(box->west, longitude);
      box->east = std::max(box->east, longitude);
      box->south = std::min(box->south, point.latitude);
      box->north = std::max(box->north, point.latitude);
    }
  }
  if (!box) return box;
  // Far more than a page's view, whose edge must not show where the land was cut.
  constexpr double LEAST = 4.0;
  constexpr double TIMES = 3.0;
  constexpr double DEGREE = 0.017453292519943295;
  const double highest = std::min(85.0, std::max(std::fabs(box->south), std::fabs(box->north)));
  const double shrink = std::cos(highest * DEGREE);
  const double size =
      std::max({(box->east - box->west) * shrink, box->north - box->south, LEAST / TIMES});
  box->west -= TIMES * size / shrink;
  box->east += TIMES * size / shrink;
  box->south = std::max(-90.0, box->south - TIMES * size);
  box->north = std::min(90.0, box->north + TIMES * size);
  return box;
}

}  // namespace varnoth::tools
