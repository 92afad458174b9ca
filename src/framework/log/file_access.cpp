#include "framework/log/file_access.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <bit>
#include <cstdint>

#include "framework/log/restarted.hpp"

namespace varnoth {

namespace {

constexpr mode_t NEW_FILE = 0666;

/// Without waiting for the other end of a pipe.
int Open(const char* path, int flags) {
  return Restarted([&] { return ::open(path, flags | O_NONBLOCK | O_CLOEXEC, NEW_FILE); });
}

bool WriteAll(int descriptor, const char* bytes, std::size_t size, std::size_t& written) {
  for (written = 0; written < size;) {
    const ssize_t count =
        Restarted([&] { return ::write(descriptor, bytes + written, size - written); });
    if (count == 0) errno = EIO;
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

/// A stream's cookie is its descriptor itself.
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

/// The descriptor is gone whatever close says, so an interrupted one is not repeated.
bool Close(int descriptor) { return ::close(descriptor) == 0 || errno == EINTR; }

int CloseCookie(void* cookie) { return Close(Number(cookie)) ? 0 : -1; }

int OpenToReplace(const char* path) {
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_NOFOLLOW;
  const int descriptor = Open(path, FLAGS);
  if (descriptor < 0 && errno != ELOOP && errno != ENXIO) return descriptor;
  if (descriptor >= 0) {
    struct stat status {};
    const bool is_foreign =
        ::fstat(descriptor, &status) == 0 && (!S_ISREG(status.st_mode) || status.st_nlink > 1);
    if (!is_foreign) return descriptor;
    ::close(descriptor);
  }
  ::unlink(path);
  return Open(path, FLAGS | O_EXCL);
}

}  // namespace

OWNED_FILE OpenStream(const char* path, int flags) {
  const int descriptor = Open(path, flags);
  if (descriptor < 0) return nullptr;
  // From here on a pipe is waited for again.
  fcntl(descriptor, F_SETFL, flags & O_APPEND);
  const bool reads = (flags & O_ACCMODE) == O_RDONLY;
  OWNED_FILE stream(fopencookie(
      std::bit_cast<void*>(std::intptr_t{descriptor}), reads ? "r" : "w",
      {.read = ReadCookie, .write = WriteCookie, .seek = SeekCookie, .close = CloseCookie}));
  if (stream == nullptr) ::close(descriptor);
  return stream;
}

bool ReplaceFile(const char* path, std::string_view text) {
  const int descriptor = OpenToReplace(path);
  if (descriptor < 0) return false;
  // The length is cut behind the bytes, so that the file is never empty where it stood already.
  std::size_t written = 0;
  const bool complete =
      WriteAll(descriptor, text.data(), text.size(), written) &&
      Restarted([&] { return ::ftruncate(descriptor, static_cast<off_t>(text.size())); }) == 0;
  return Close(descriptor) && complete;
}

}  // namespace varnoth
