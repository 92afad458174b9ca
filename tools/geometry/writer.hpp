#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/geometry/columns.hpp"
#include "tools/geometry/pair_loading.hpp"
#include "tools/geometry/point_source.hpp"

namespace varnoth::tools {

/// Writes rows in a format. Throws std::runtime_error with the reason if that fails.
///
///     writer.Begin();
///     std::string text;
///     writer.Format(rows, 0, text);  // in any thread
///     writer.Write(rows, 0, text);
///     writer.Finish();
class GEOMETRY_WRITER {
 public:
  virtual ~GEOMETRY_WRITER() = default;
  virtual void Begin() = 0;
  /// Appends the text of rows; `first` is the number of the first one, from 0. Any number of
  /// threads may call it.
  virtual void Format(const std::vector<ROW>& rows, std::size_t first, std::string& text) const = 0;
  /// Writes a block of POINT_SOURCE with its text, the blocks in order.
  virtual void Write(const std::vector<ROW>& rows, std::size_t first, const std::string& text) = 0;
  /// The file stands only after this.
  virtual void Finish() = 0;
};

/// The writer of "text", "csv" or "json", to a file or, for an empty name, to standard output.
std::unique_ptr<GEOMETRY_WRITER> MakeTextWriter(const std::string& format, const std::string& file);

/// The writer of a netCDF file by the CF conventions: on a grid with the dimensions height, line
/// and sample, else with the dimension point. It says which pair this is.
std::unique_ptr<GEOMETRY_WRITER> MakeNetcdfWriter(const LOADED_PAIR& pair,
                                                  const POINT_SOURCE& points,
                                                  const std::string& file);

}  // namespace varnoth::tools
