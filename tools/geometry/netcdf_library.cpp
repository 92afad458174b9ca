#include "tools/geometry/netcdf_library.hpp"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace varnoth::tools {

namespace {

/// Of the version that netcdf.h belongs to.
constexpr const char* FILE_NAME = VARNOTH_NETCDF_LIBRARY;

[[noreturn]] void Fail() {
  throw std::runtime_error(std::string("netCDF files need the library ") + FILE_NAME + ": " +
                           dlerror());
}

void* Load() {
  void* const library = dlopen(FILE_NAME, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) Fail();
  return library;
}

}  // namespace

template <class FUNCTION>
FUNCTION NETCDF_LIBRARY::Find(const char* name) const {
  void* const found = dlsym(library, name);
  if (found == nullptr) Fail();
  return reinterpret_cast<FUNCTION>(found);
}

NETCDF_LIBRARY::NETCDF_LIBRARY() : library(Load()) {}

}  // namespace varnoth::tools
