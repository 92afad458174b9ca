#include "tools/report/land.hpp"

#include <charconv>
#include <cmath>

namespace varnoth::tools {

namespace {

constexpr double TURN = 360.0;

RING RingOf(std::string_view line) {
  constexpr double UNIT = 0.01;
  RING ring;
  int sum[2] = {};
  int count = 0;
  const char* at = line.data();
  const char* const end = at + line.size();
  while (at < end) {
    int step = 0;
    const auto [stop, error] = std::from_chars(at, end, step);
    if (error != std::errc()) break;
    at = stop + 1;
    sum[count % 2] += step;
    if (++count % 2 == 0) ring.push_back({sum[0] * UNIT, sum[1] * UNIT});
  }
  return ring;
}

/// The part of a ring on one side of a border, where `beyond` gives the distance to it
/// (Sutherland and Hodgman 1974).
template <class DISTANCE>
RING Cut(const RING& ring, DISTANCE beyond) {
  RING kept;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const MAP_POINT& from = ring[i];
    const MAP_POINT& to = ring[(i + 1) % ring.size()];
    const double a = beyond(from);
    const double b = beyond(to);
    if (a <= 0) kept.push_back(from);
    if ((a <= 0) != (b <= 0)) {
      const double part = a / (a - b);
      kept.push_back({from.longitude + part * (to.longitude - from.longitude),
                      from.latitude + part * (to.latitude - from.latitude)});
    }
  }
  return kept;
}

RING CutToBox(RING ring, const MAP_BOX& box) {
  ring = Cut(ring, [&](const MAP_POINT& p) { return box.west - p.longitude; });
  ring = Cut(ring, [&](const MAP_POINT& p) { return p.longitude - box.east; });
  ring = Cut(ring, [&](const MAP_POINT& p) { return box.south - p.latitude; });
  return Cut(ring, [&](const MAP_POINT& p) { return p.latitude - box.north; });
}

bool IsAroundPole(const RING& ring) {
  return std::fabs(ring.back().longitude - ring.front().longitude) > TURN / 2;
}

/// A ring around a pole, as often as a box can ask for, and closed beyond the pole.
RING Unrolled(const RING& once) {
  const double turn = std::copysign(TURN, once.back().longitude - once.front().longitude);
  const double pole = std::copysign(91.0, once.front().latitude);
  RING ring;
  for (const double times : {-2.0, -1.0, 0.0, 1.0, 2.0}) {
    for (const MAP_POINT& point : once) {
      ring.push_back({point.longitude + times * turn, point.latitude});
    }
  }
  ring.push_back({ring.back().longitude, pole});
  ring.push_back({ring.front().longitude, pole});
  return ring;
}

}  // namespace

std::vector<RING> LandWithin(std::string_view text, const MAP_BOX& box) {
  constexpr std::size_t LEAST = 3;  // points of a ring
  std::vector<RING> land;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (line.starts_with('#')) continue;
    const RING ring = RingOf(line);
    if (ring.size() < LEAST) continue;
    if (IsAroundPole(ring)) {
      RING cut = CutToBox(Unrolled(ring), box);
      if (cut.size() >= LEAST) land.push_back(std::move(cut));
      continue;
    }
    for (const double turn : {-TURN, 0.0, TURN}) {
      const MAP_BOX turned = {box.west - turn, box.east - turn, box.south, box.north};
      RING cut = CutToBox(ring, turned);
      for (MAP_POINT& point : cut) point.longitude += turn;
      if (cut.size() >= LEAST) land.push_back(std::move(cut));
    }
  }
  return land;
}

}  // namespace varnoth::tools
