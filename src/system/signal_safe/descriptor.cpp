#include "system/signal_safe/descriptor.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace varnoth {

namespace {

constexpr mode_t NEW_FILE = 0666;

/// Also gives the size of the file.
int OpenToReplace(const char* path, off_t& size) {
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_NOFOLLOW;
  const int descriptor = OpenAtOnce(path, FLAGS);
  if (descriptor < 0 && errno != ELOOP && errno != ENXIO) return descriptor;
  if (descriptor >= 0) {
    struct stat status {};
    const bool is_foreign =
        ::fstat(descriptor, &status) == 0 && (!S_ISREG(status.st_mode) || status.st_nlink > 1);
    size = status.st_size;
    if (!is_foreign) return descriptor;
    ::close(descriptor);
  }
  ::unlink(path);
  size = 0;
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
  off_t size = 0;
  const int descriptor = OpenToReplace(path, size);
  if (descriptor < 0) return false;
  // Cut the length after writing the bytes, so that an existing file is never empty.
  const auto wanted = static_cast<off_t>(text.size());
  std::size_t written = 0;
  const bool complete =
      WriteAll(descriptor, text.data(), text.size(), written) &&
      (size <= wanted || Restarted([&] { return ::ftruncate(descriptor, wanted); }) == 0);
  return CloseDescriptor(descriptor) && complete;
}

}  // namespace varnoth
