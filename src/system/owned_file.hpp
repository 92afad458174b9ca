#pragma once

#include <cstdio>
#include <memory>

namespace varnoth {

struct FILE_CLOSER {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// A C stream that is closed with its owner; null if the file could not be opened. Where a failed
/// close matters, release it and close it by hand.
using OWNED_FILE = std::unique_ptr<std::FILE, FILE_CLOSER>;

}  // namespace varnoth
