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

/// Opens a file as fopen does, again where a signal interrupts it; null, with errno set, on
/// failure.
OWNED_FILE OpenFile(const char* path, const char* mode);
/// The same for names that others may have made a pipe of: a pipe without a partner is empty to a
/// reader ("re") and can't be opened by a writer ("ae"), instead of keeping either waiting.
OWNED_FILE OpenWithoutWaiting(const char* path, const char* mode);

}  // namespace varnoth
