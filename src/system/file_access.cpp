#include "system/file_access.hpp"

#include <fcntl.h>
#include <libgen.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstdint>
#include <string>

#include "system/signal_safe/descriptor.hpp"
#include "system/signal_safe/restarted.hpp"

namespace varnoth {

namespace {

/// A stream's cookie is the descriptor itself.
int Number(void* cookie) { return static_cast<int>(std::bit_cast<std::intptr_t>(cookie)); }

ssize_t ReadCookie(void* cookie, char* buffer, std::size_t size) {
  return Restarted([&] { return ::read(Number(cookie), buffer, size); });
}

ssize_t WriteCookie(void* cookie, const char* bytes, std::size_t size) {
  std::size_t written = 0;
  WriteAll(Number(cookie), bytes, size, written);
  return static_cast<ssize_t>(written);  // fewer bytes raise the stream's error
}

int SeekCookie(void* cookie, off64_t* offset, int origin) {
  *offset = ::lseek(Number(cookie), *offset, origin);
  return *offset < 0 ? -1 : 0;
}

int CloseCookie(void* cookie) { return CloseDescriptor(Number(cookie)) ? 0 : -1; }

}  // namespace

OWNED_FILE OpenStream(const char* path, int flags) {
  const int descriptor = OpenDescriptor(path, flags);
  if (descriptor < 0) return nullptr;
  const bool reads = (flags & O_ACCMODE) == O_RDONLY;
  OWNED_FILE stream(fopencookie(
      std::bit_cast<void*>(std::intptr_t{descriptor}), reads ? "r" : "w",
      {.read = ReadCookie, .write = WriteCookie, .seek = SeekCookie, .close = CloseCookie}));
  if (stream == nullptr) ::close(descriptor);
  return stream;
}

bool SyncName(const char* path) {
  std::string copy = path;  // dirname changes its argument
  const int directory = OpenAtOnce(dirname(copy.data()), O_RDONLY | O_DIRECTORY);
  if (directory < 0) return false;
  const bool is_synced = Restarted([&] { return ::fsync(directory); }) == 0;
  const int error = errno;
  ::close(directory);
  errno = error;
  return is_synced;
}

}  // namespace varnoth
