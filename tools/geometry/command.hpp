#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/message.hpp"

namespace varnoth::tools {

/// What the command "geometry" was given.
struct GEOMETRY_REQUEST {
  std::vector<std::string> of_step;  ///< the step's own arguments
  std::string points;                ///< file of points, or "-"; empty for a grid
  std::size_t lines = 0;             ///< of the grid
  std::size_t samples = 0;
  std::vector<double> heights;  ///< of the grid, m, rising; none for the scene's own height
  std::string format;           ///< "text", "csv", "json" or "netcdf"
  std::string out;              ///< empty for standard output, which takes no netCDF
  std::size_t jobs = 1;         ///< threads, 1 or more
};

/// Writes the geometry of points of a pair. FINDINGS if there is no pair, if a line of the file is
/// no point, if writing fails, or if a point has no geometry.
TOOL_STATUS WriteGeometry(const GEOMETRY_REQUEST& request);

/// Reads LINESxSAMPLES, two of each at least. False for all else.
bool ReadGrid(const std::string& text, GEOMETRY_REQUEST& request);

/// Reads the heights of a grid, as "0,500", into rising order. Why it can't; nothing if it could.
std::string ReadHeights(const std::string& text, GEOMETRY_REQUEST& request);

/// The format that the name of a file asks for: that of .csv, .json or .nc, else "text".
std::string FormatOf(const std::string& file);

}  // namespace varnoth::tools
