#include "framework/log/owned_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include "framework/log/restarted.hpp"

namespace varnoth {

OWNED_FILE OpenFile(const char* path, const char* mode) {
  OWNED_FILE file(std::fopen(path, mode));
  while (file == nullptr && errno == EINTR) file.reset(std::fopen(path, mode));
  return file;
}

OWNED_FILE OpenWithoutWaiting(const char* path, const char* mode) {
  const int flags = mode[0] == 'r' ? O_RDONLY : O_WRONLY | O_CREAT | O_APPEND;
  const int descriptor =
      Restarted([&] { return ::open(path, flags | O_CLOEXEC | O_NONBLOCK, 0666); });
  if (descriptor < 0) return nullptr;
  // Once it is open, a partner may take its time.
  fcntl(descriptor, F_SETFL, flags & O_APPEND);
  OWNED_FILE file(fdopen(descriptor, mode));
  if (file == nullptr) ::close(descriptor);
  return file;
}

}  // namespace varnoth
