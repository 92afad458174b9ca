#pragma once

#include "system/owned_file.hpp"

namespace varnoth {

/// Opens a C stream by the flags of open(2), for reading (O_RDONLY) or for writing alone; a file
/// that it creates has mode 0666. Returns null, with errno set, on failure. The stream restarts
/// calls that a signal interrupts. It refuses to open a pipe for writing that nobody reads, instead
/// of waiting.
///
///     const OWNED_FILE file = OpenStream("orbit.txt", O_RDONLY);
///     if (file == nullptr) std::perror("orbit.txt");
OWNED_FILE OpenStream(const char* path, int flags);

/// Waits until the disk holds the names in the directory of `path`: after a power cut, created
/// files are still there and removed ones don't come back. False, with errno set, on failure.
bool SyncName(const char* path);

}  // namespace varnoth
