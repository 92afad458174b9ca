#pragma once

#include <netcdf.h>

namespace varnoth::tools {

/// The functions of the netCDF library that are needed here. The program is not linked with it: it
/// brings some forty others, and loading them takes longer than most commands.
class NETCDF_LIBRARY {
 public:
  /// Loads the library, for the rest of the process. Throws std::runtime_error where it is missing.
  NETCDF_LIBRARY();

 private:
  template <class FUNCTION>
  FUNCTION Find(const char* name) const;

  void* library;

 public:
#define VARNOTH_FUNCTION(name) decltype(&::name) name = Find<decltype(&::name)>(#name)
  VARNOTH_FUNCTION(nc_abort);
  VARNOTH_FUNCTION(nc_close);
  VARNOTH_FUNCTION(nc_create);
  VARNOTH_FUNCTION(nc_def_dim);
  VARNOTH_FUNCTION(nc_def_var);
  VARNOTH_FUNCTION(nc_enddef);
  VARNOTH_FUNCTION(nc_put_att_double);
  VARNOTH_FUNCTION(nc_put_att_text);
  VARNOTH_FUNCTION(nc_put_var_double);
  VARNOTH_FUNCTION(nc_put_vara_double);
  VARNOTH_FUNCTION(nc_set_fill);
  VARNOTH_FUNCTION(nc_strerror);
#undef VARNOTH_FUNCTION
};

}  // namespace varnoth::tools
