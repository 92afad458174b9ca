#include "enumerations/image_direction.hpp"

namespace varnoth::SAR {

namespace {

const Edge& Across(const Edge& edge) {
  if (edge.id < Edge::TOP || edge.id > Edge::LEFT) {
    throw BASIC::TYPES::ERROR_ENUM_BASE_INVALID_ID();
  }
  return Edge::Row(edge.id < Edge::BOTTOM ? edge.id + 2 : edge.id - 2);
}

}  // namespace

ImageDirection::ImageDirection(const Edge& range, const Edge& azimuth)
    : range_edge(range), azimuth_edge(azimuth) {
  if (range == azimuth || Across(range) == azimuth || range == Across(azimuth)) {
    throw "range and azimuth should be at orthogonal edges";
  }
}

Edge ImageDirection::Opposite(const Edge& edge) const { return Across(edge); }

Edge ImageDirection::EdgeOf(const BASIC::TYPES::ENUM_BASE& object) const {
  if (typeid(object) == typeid(Azimuth)) {
    if (object.id == Azimuth::START) return azimuth_edge;
    if (object.id == Azimuth::STOP) return Opposite(azimuth_edge);
    throw "mid azimuth is at no edge";
  }
  if (typeid(object) == typeid(Range)) {
    if (object.id == Range::NEAR) return range_edge;
    if (object.id == Range::FAR) return Opposite(range_edge);
    throw "mid range is at no edge";
  }
  throw BASIC::TYPES::ERROR_ENUM_BASE_TYPE_MISMATCH();
}

}  // namespace varnoth::SAR
