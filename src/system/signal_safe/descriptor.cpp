#include "system/signal_safe/descriptor.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace varnoth {

namespace {

constexpr mode_t NEW_FILE = 0666;

int OpenToReplace(const char* path) {
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_NOFOLLOW;
  const int descriptor = OpenAtOnce(path, FLAGS);
  if (descriptor < 0 && errno != ELOOP && errno != ENXIO) return descriptor;
  if (descriptor >= 0) {
    struct stat status {};
    const bool is_foreign =
        ::fstat(descriptor, &status) == 0 && (!S_ISREG(status.st_mode) || status.st_nlink > 1);
    if (!is_foreign) return descriptor;
    ::close(descriptor);
  }
  ::unlink(path);
  return OpenAtOnce(path, FLAGS | O_EXCL);
}

}  // namespace

int OpenAtOnce(const char* path, int flags) {
  return Restarted([&] { return ::open(path, flags | O_NONBLOCK | O_CLOEXEC, NEW_FILE); });
}

int OpenDescriptor(const char* path, int flags) {
  const int descriptor = OpenAtOnce(path, flags);
  if (descriptor >= 0) ::fcntl(descriptor, F_SETFL, flags & O_APPEND);
  return descriptor;
}

bool WriteAll(int descriptor, const char* bytes, std::size_t size, std::size_t& written) {
  return WriteAllBy(
      [&](const char* next, std::size_t left) { return ::write(descriptor, next, left); }, bytes,
      size, written);
}

bool TakesBytes(int descriptor) {
  pollfd wanted{.fd = descriptor, .events = POLLOUT, .revents = 0};
  return ::poll(&wanted, 1, 0) == 1 && (wanted.revents & POLLOUT) != 0;
}

bool CloseDescriptor(int descriptor) { return ::close(descriptor) == 0 || errno == EINTR; }

bool ReplaceFile(const char* path, std::string_view text) {
  const int descriptor = OpenToReplace(path);
  if (descriptor < 0) return false;
  // Cut the length after writing the bytes, so that an existing file is never empty.
  std::size_t written = 0;
  const bool complete =
      WriteAll(descriptor, text.data(), text.size(), written) &&
      Restarted([&] { return ::ftruncate(descriptor, static_cast<off_t>(text.size())); }) == 0;
  return CloseDescriptor(descriptor) && complete;
}

}  // namespace varnoth
