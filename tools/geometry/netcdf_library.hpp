#pragma once

#include <netcdf.h>

#include "tools/lazy_library.hpp"

namespace varnoth::tools {

/// The functions of the netCDF library that are needed here.
struct NETCDF_LIBRARY : LAZY_LIBRARY {
  NETCDF_LIBRARY() : LAZY_LIBRARY(VARNOTH_NETCDF_LIBRARY, "netCDF files") {}

  VARNOTH_LAZY_FUNCTION(nc_abort);
  VARNOTH_LAZY_FUNCTION(nc_close);
  VARNOTH_LAZY_FUNCTION(nc_create);
  VARNOTH_LAZY_FUNCTION(nc_def_dim);
  VARNOTH_LAZY_FUNCTION(nc_def_var);
  VARNOTH_LAZY_FUNCTION(nc_enddef);
  VARNOTH_LAZY_FUNCTION(nc_put_att_double);
  VARNOTH_LAZY_FUNCTION(nc_put_att_text);
  VARNOTH_LAZY_FUNCTION(nc_put_var_double);
  VARNOTH_LAZY_FUNCTION(nc_put_vara_double);
  VARNOTH_LAZY_FUNCTION(nc_set_fill);
  VARNOTH_LAZY_FUNCTION(nc_strerror);
};

}  // namespace varnoth::tools
