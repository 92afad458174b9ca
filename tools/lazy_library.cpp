#include "tools/lazy_library.hpp"

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace varnoth {

namespace {

[[noreturn]] void Fail(const char* file, const char* purpose) {
  throw std::runtime_error(std::string(purpose) + " need the library " + file + ": " + dlerror());
}

}  // namespace

LAZY_LIBRARY::LAZY_LIBRARY(const char* file, const char* purpose)
    : name(file), user(purpose), library(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
  if (library == nullptr) Fail(name, user);
}

void* LAZY_LIBRARY::Address(const char* function) const {
  void* const found = dlsym(library, function);
  if (found == nullptr) Fail(name, user);
  return found;
}

}  // namespace varnoth
