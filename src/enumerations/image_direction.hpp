#pragma once

#include "enumerations/sar_enumerations.hpp"
#include "foundation/pairs.hpp"

namespace varnoth::SAR {

/// How an image lies: the edges of near range and of the start in azimuth.
class ImageDirection : public TUPLE<Edge> {
 public:
  /// Throws "range and azimuth should be at orthogonal edges" for edges that are equal or opposite
  /// and ERROR_ENUM_BASE_INVALID_ID for guards.
  ImageDirection(const Edge& range, const Edge& azimuth);

  /// The edge across the image. Throws ERROR_ENUM_BASE_INVALID_ID for a guard, which is no edge.
  virtual Edge Opposite(const Edge& edge) const;
  /// The edge at which an Azimuth or a Range lies. Throws "mid azimuth is at no edge" and "mid
  /// range is at no edge" for what is neither start nor stop, near nor far, and
  /// ERROR_ENUM_BASE_TYPE_MISMATCH for an object of another class.
  virtual Edge EdgeOf(const BASIC::TYPES::ENUM_BASE& object) const;

  Edge range_edge;
  Edge azimuth_edge;
};

}  // namespace varnoth::SAR
