#pragma once

#include "system/owned_file.hpp"

namespace varnoth {

/// Opens a C stream by the flags of open(2), a new file with mode 0666; null, with errno set, if it
/// can't be opened. Calls on it that a signal interrupts go on. A pipe to write into that nobody
/// reads is refused instead of waited for.
OWNED_FILE OpenStream(const char* path, int flags);

/// Waits until the disk holds the names in a file's directory: what was made there stays after a
/// power cut, what was removed stays away. False, with errno set, on failure.
bool SyncName(const char* path);

}  // namespace varnoth
