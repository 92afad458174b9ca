#pragma once

#include <cstdio>
#include <memory>

namespace varnoth {

struct FILE_CLOSER {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// A C stream that its owner closes; null if the file could not be opened. The owner ignores a
/// failed close. Where the failure matters, close by hand:
///
///     if (std::fclose(file.release()) != 0) std::perror("close");
using OWNED_FILE = std::unique_ptr<std::FILE, FILE_CLOSER>;

}  // namespace varnoth
