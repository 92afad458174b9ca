#include <cmath>
#include <cstring>
#include <stdexcept>

#include "tools/geometry/netcdf_library.hpp"
#include "tools/geometry/writer.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

class NETCDF_WRITER final : public GEOMETRY_WRITER {
 public:
  NETCDF_WRITER(const LOADED_PAIR& loaded, const POINT_SOURCE& source, const std::string& name)
      : pair(loaded), points(source), grid(source.Grid()), file(name) {}
  ~NETCDF_WRITER() override {
    if (id >= 0) library.nc_abort(id);
  }
  NETCDF_WRITER(const NETCDF_WRITER&) = delete;
  NETCDF_WRITER& operator=(const NETCDF_WRITER&) = delete;

  void Begin() override {
    Check(library.nc_create(file.Temporary().c_str(), NC_CLOBBER | NC_64BIT_OFFSET, &id));
    int old_mode = 0;
    Check(library.nc_set_fill(id, NC_NOFILL, &old_mode));
    DescribePair();
    if (grid != nullptr) {
      Text(NC_GLOBAL, "Conventions", "CF-1.8");
      DefineGrid();
    } else {
      DefinePoints();
    }
    Check(library.nc_enddef(id));
    if (grid == nullptr) return;
    Check(library.nc_put_var_double(id, variables[0], grid->lines.data()));
    Check(library.nc_put_var_double(id, variables[1], grid->samples.data()));
    Check(library.nc_put_var_double(id, variables[2], grid->heights.data()));
  }

  void Format(const std::vector<ROW>& /*rows*/, std::size_t /*first*/,
              std::string& /*text*/) const override {}

  void Write(const std::vector<ROW>& rows, std::size_t first,
             const std::string& /*text*/) override {
    std::size_t start[3] = {first};
    std::size_t count[3] = {rows.size()};
    if (grid != nullptr) {
      const std::size_t width = grid->samples.size();
      const std::size_t line = first / width;
      const std::size_t place[] = {line / grid->lines.size(), line % grid->lines.size(),
                                   first % width};
      const std::size_t lines = std::max<std::size_t>(rows.size() / width, 1);
      const std::size_t size[] = {1, lines, rows.size() / lines};
      std::copy_n(place, 3, start);
      std::copy_n(size, 3, count);
    }
    std::vector<double> values(rows.size());
    for (std::size_t i = grid != nullptr ? POINT_COLUMNS : 0; i < COLUMN_COUNT; ++i) {
      for (std::size_t k = 0; k < rows.size(); ++k) values[k] = rows[k][i];
      Check(library.nc_put_vara_double(id, variables[i], start, count, values.data()));
    }
  }

  void Finish() override {
    const int status = library.nc_close(id);
    id = -1;
    Check(status);
    file.Finish();
  }

 private:
  void Check(int status) const {
    if (status != NC_NOERR) throw std::runtime_error(library.nc_strerror(status));
  }
  void Text(int variable, const char* name, const std::string& text) {
    Check(library.nc_put_att_text(id, variable, name, text.size(), text.c_str()));
  }
  void Number(const char* name, double value) {
    Check(library.nc_put_att_double(id, NC_GLOBAL, name, NC_DOUBLE, 1, &value));
  }

  void DescribePair() {
    Text(NC_GLOBAL, "title", "Geometry of an interferometric pair of radar images");
    Text(NC_GLOBAL, "source", "varnoth-tools geometry");
    const char* const roles[] = {"master", "slave"};
    const double first_lines[] = {pair.scene.master_first_az_time, pair.scene.slave_first_az_time};
    for (const ROLE role : {MASTER, SLAVE}) {
      const std::string name = roles[role];
      const POOL_INPUT& pool = pair.pools.scene[role];
      Text(NC_GLOBAL, (name + "_pool").c_str(), pool.file);
      Text(NC_GLOBAL, (name + "_orbit_reference_time").c_str(), pool.Text("orbit_reference_time"));
      Number((name + "_first_line_seconds").c_str(), first_lines[role]);
      Number((name + "_radar_frequency_hz").c_str(), pair.scene.radar_frequency[role]);
    }
    Text(NC_GLOBAL, "insar_pool", pair.pools.insar.file);
    Text(NC_GLOBAL, "observation_mode", pair.scene.observation_mode.text);
    Text(NC_GLOBAL, "look_direction", pair.look_direction < 0.0 ? "left" : "right");
  }

  int Dimension(const char* name, std::size_t size) {
    int dimension = 0;
    Check(library.nc_def_dim(id, name, size, &dimension));
    return dimension;
  }

  void Define(std::size_t column, const char* name, const std::vector<int>& dimensions) {
    int& variable = variables[column];
    Check(library.nc_def_var(id, name, NC_DOUBLE, static_cast<int>(dimensions.size()),
                             dimensions.data(), &variable));
    // GDAL takes every "m" of a list of points for a height, but no "metre".
    const bool is_length = column >= POINT_COLUMNS && COLUMNS[column].unit == std::string("m");
    Text(variable, "units", is_length ? "metre" : COLUMNS[column].unit);
    Text(variable, "long_name", COLUMNS[column].meaning);
  }

  void DefineGrid() {
    const int height = Dimension("height", grid->heights.size());
    const int line = Dimension("line", grid->lines.size());
    const int sample = Dimension("sample", grid->samples.size());
    Define(0, "line", {line});
    Define(1, "sample", {sample});
    Define(2, "height", {height});
    DefineQuantities({height, line, sample});
    Text(variables[0], "axis", "Y");
    Text(variables[1], "axis", "X");
    Text(variables[2], "axis", "Z");
    Text(variables[2], "standard_name", "height_above_reference_ellipsoid");
    Text(variables[2], "positive", "up");
  }

  void DefinePoints() {
    // The version that brought lists of points, and the only one in which GDAL 3.6 sees them.
    Text(NC_GLOBAL, "Conventions", "CF-1.6");
    Text(NC_GLOBAL, "featureType", "point");
    const int point = Dimension("point", points.Count());
    for (std::size_t i = 0; i < POINT_COLUMNS; ++i) Define(i, COLUMNS[i].name, {point});
    DefineQuantities({point});
  }

  void DefineQuantities(const std::vector<int>& dimensions) {
    const double none = std::nan("");
    for (std::size_t i = POINT_COLUMNS; i < COLUMN_COUNT; ++i) {
      Define(i, COLUMNS[i].name, dimensions);
      Check(library.nc_put_att_double(id, variables[i], "_FillValue", NC_DOUBLE, 1, &none));
      const bool is_place = i < POINT_COLUMNS + 2;
      if (!is_place) Text(variables[i], "coordinates", "longitude_deg latitude_deg");
    }
    Text(variables[POINT_COLUMNS], "standard_name", "longitude");
    Text(variables[POINT_COLUMNS + 1], "standard_name", "latitude");
  }

  const NETCDF_LIBRARY library;
  const LOADED_PAIR& pair;
  const POINT_SOURCE& points;
  const GRID* grid;
  WHOLE_FILE file;
  int id = -1;
  int variables[COLUMN_COUNT] = {};
};

}  // namespace

std::unique_ptr<GEOMETRY_WRITER> MakeNetcdfWriter(const LOADED_PAIR& pair,
                                                  const POINT_SOURCE& points,
                                                  const std::string& file) {
  return std::make_unique<NETCDF_WRITER>(pair, points, file);
}

}  // namespace varnoth::tools
