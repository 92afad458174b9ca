#pragma once

namespace varnoth {

/// A shared library that few commands need. The program is not linked with it, since loading it
/// with all that it brings takes longer than most commands. It stays for the rest of the process.
///
///     struct ZIP_LIBRARY : LAZY_LIBRARY {
///       ZIP_LIBRARY() : LAZY_LIBRARY("libzip.so.4", "ZIP archives") {}
///       VARNOTH_LAZY_FUNCTION(zip_open);
///     };
class LAZY_LIBRARY {
 protected:
  /// Loads a file of the system's library directories. Throws std::runtime_error where it is
  /// missing, which says what it is needed for.
  LAZY_LIBRARY(const char* file, const char* purpose);

  /// Throws as the constructor does for a function that the library lacks.
  template <class FUNCTION>
  FUNCTION Find(const char* function) const {
    return reinterpret_cast<FUNCTION>(Address(function));
  }

 private:
  void* Address(const char* function) const;

  const char* name;
  const char* user;
  void* library;
};

/// A member with the name and the type of a function of the library.
#define VARNOTH_LAZY_FUNCTION(name) decltype(&::name) name = Find<decltype(&::name)>(#name)

}  // namespace varnoth
