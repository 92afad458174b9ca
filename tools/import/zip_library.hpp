#pragma once

#include <zip.h>

#include "tools/lazy_library.hpp"

namespace varnoth::tools {

/// The functions of libzip that are needed here.
struct ZIP_LIBRARY : LAZY_LIBRARY {
  ZIP_LIBRARY() : LAZY_LIBRARY(VARNOTH_ZIP_LIBRARY, "ZIP archives") {}

  VARNOTH_LAZY_FUNCTION(zip_discard);
  VARNOTH_LAZY_FUNCTION(zip_error_fini);
  VARNOTH_LAZY_FUNCTION(zip_error_init_with_code);
  VARNOTH_LAZY_FUNCTION(zip_error_strerror);
  VARNOTH_LAZY_FUNCTION(zip_fclose);
  VARNOTH_LAZY_FUNCTION(zip_file_strerror);
  VARNOTH_LAZY_FUNCTION(zip_fopen);
  VARNOTH_LAZY_FUNCTION(zip_fread);
  VARNOTH_LAZY_FUNCTION(zip_get_name);
  VARNOTH_LAZY_FUNCTION(zip_get_num_entries);
  VARNOTH_LAZY_FUNCTION(zip_open);
  VARNOTH_LAZY_FUNCTION(zip_strerror);
};

/// Loads it at the first call.
inline const ZIP_LIBRARY& Zip() {
  static const ZIP_LIBRARY library;
  return library;
}

}  // namespace varnoth::tools
