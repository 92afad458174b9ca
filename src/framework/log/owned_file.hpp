#pragma once

#include <cerrno>
#include <cstdio>
#include <memory>

namespace varnoth {

struct FILE_CLOSER {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// A C stream that is closed with its owner; null if the file could not be opened. Where a failed
/// close matters, release it and close it by hand.
using OWNED_FILE = std::unique_ptr<std::FILE, FILE_CLOSER>;

/// Opens a file as fopen does, again where a signal interrupts it; null, with errno set, on
/// failure.
inline OWNED_FILE OpenFile(const char* path, const char* mode) {
  OWNED_FILE file(std::fopen(path, mode));
  while (file == nullptr && errno == EINTR) file.reset(std::fopen(path, mode));
  return file;
}

}  // namespace varnoth
