#pragma once

#include "enumerations/sar_enumerations.hpp"
#include "foundation/pairs.hpp"

namespace varnoth::SAR {

/// The orientation of an image: the edges of near range and of the start in azimuth.
///
///     const ImageDirection direction(Edge("LEFT"), Edge("TOP"));
///     const Edge far = direction.EdgeOf(Range("far"));  // RIGHT
class ImageDirection : public TUPLE<Edge> {
 public:
  /// Takes the edge of near range and the edge of the start in azimuth. Throws "range and azimuth
  /// should be at orthogonal edges" for equal or opposite edges, equal guards included, and
  /// ERROR_ENUM_BASE_INVALID_ID for any other guard.
  ImageDirection(const Edge& range, const Edge& azimuth);

  /// The edge on the other side of the image. Throws ERROR_ENUM_BASE_INVALID_ID for a guard.
  virtual Edge Opposite(const Edge& edge) const;
  /// The edge of an Azimuth or a Range. Throws "mid azimuth is at no edge" for any Azimuth but
  /// start and stop, "mid range is at no edge" for any Range but near and far, and
  /// ERROR_ENUM_BASE_TYPE_MISMATCH for an object of another class.
  virtual Edge EdgeOf(const BASIC::TYPES::ENUM_BASE& object) const;

  Edge range_edge;
  Edge azimuth_edge;
};

}  // namespace varnoth::SAR
