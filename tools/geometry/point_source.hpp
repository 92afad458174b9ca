#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "driver/geometry_state.hpp"

namespace varnoth::tools {

/// A point of the master's grid.
struct IMAGE_POINT {
  double line = 0.0;          ///< from 0, fractions allowed
  double sample = 0.0;        ///< from 0, fractions allowed
  double height = 0.0;        ///< above the ellipsoid, m
  std::size_t file_line = 0;  ///< of the points file; 0 on a grid
};

/// The coordinates of a grid; its points are ordered by height, then line, then sample.
struct GRID {
  std::vector<double> heights;
  std::vector<double> lines;
  std::vector<double> samples;
};

/// The points in blocks, so that their number does not matter to the memory.
class POINT_SOURCE {
 public:
  virtual ~POINT_SOURCE() = default;
  /// The next points, none at the end. On a grid they are some whole lines of one height, or a part
  /// of one line.
  virtual std::vector<IMAGE_POINT> Next() = 0;
  virtual std::size_t Count() const = 0;
  virtual const GRID* Grid() const { return nullptr; }
};

/// A grid over the scene with both its ends: LINESxSAMPLES, two of each at least.
std::unique_ptr<POINT_SOURCE> MakeGrid(const varnoth::SCENE& scene, std::size_t lines,
                                       std::size_t samples, const std::vector<double>& heights);

/// The points of comma-separated values in a file, in a pipe or, as "-", in the standard input:
/// line, sample and height (m), in this order or in that of a head line, which may name other
/// columns as well. Lines that are empty or begin with "#" are skipped. Tells of the lines that are
/// no points, and returns null then. Throws std::runtime_error with the reason if the file can't be
/// read.
std::unique_ptr<POINT_SOURCE> OpenPoints(const std::string& file);

}  // namespace varnoth::tools
