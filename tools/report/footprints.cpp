#include "tools/report/footprints.hpp"

#include <algorithm>
#include <cmath>

namespace varnoth::tools {

namespace {

constexpr double TURN = 360.0;

/// The longitude that means the same and lies within half a turn of another one.
double Beside(double longitude, double other) {
  return other + std::remainder(longitude - other, TURN);
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

double MiddleLongitude(const std::vector<PAIR_RECORD>& records) {
  std::vector<double> starts;
  for (const PAIR_RECORD& record : records) {
    const std::optional<RING> ring = Footprint(record);
    if (ring) starts.push_back(Beside(ring->front().longitude, 0.0));
  }
  if (starts.empty()) return 0.0;
  std::ranges::sort(starts);
  double widest = starts.front() + TURN - starts.back();
  double middle = (starts.front() + starts.back()) / 2;
  for (std::size_t i = 1; i < starts.size(); ++i) {
    if (starts[i] - starts[i - 1] <= widest) continue;
    widest = starts[i] - starts[i - 1];
    middle = Beside((starts[i] + starts[i - 1] + TURN) / 2, 0.0);
  }
  return middle;
}

std::optional<MAP_BOX> Surroundings(const std::vector<PAIR_RECORD>& records, double middle) {
  std::optional<MAP_BOX> box;
  for (const PAIR_RECORD& record : records) {
    std::optional<RING> ring = Footprint(record);
    if (!ring) continue;
    const double start = Beside(ring->front().longitude, middle);
    if (!box) box = MAP_BOX{start, start, ring->front().latitude, ring->front().latitude};
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
  box->west = std::max(middle - TURN, box->west - TIMES * size / shrink);
  box->east = std::min(middle + TURN, box->east + TIMES * size / shrink);
  box->south = std::max(-90.0, box->south - TIMES * size);
  box->north = std::min(90.0, box->north + TIMES * size);
  return box;
}

}  // namespace varnoth::tools
