#include "tools/whole_file.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace varnoth::tools {

namespace {

bool WriteAll(int descriptor, std::string_view rest) {
  while (!rest.empty()) {
    const ssize_t count = ::write(descriptor, rest.data(), rest.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

unsigned CreationMask() {
  const mode_t mask = umask(0);  // the only way to read it
  umask(mask);
  return mask;
}

void WriteWholeFile(const std::string& file, const std::string& content) {
  struct stat old {};
  const bool is_there = stat(file.c_str(), &old) == 0;
  if (is_there && !S_ISREG(old.st_mode)) throw std::runtime_error("not an ordinary file");
  // What a link leads to is replaced, not the link.
  const std::string place = is_there ? std::filesystem::canonical(file).string() : file;
  std::string temporary = place + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) throw std::runtime_error(std::strerror(errno));
  const mode_t mode = is_there ? old.st_mode & 07777 : 0666 & ~CreationMask();
  bool is_good = WriteAll(descriptor, content) && fchmod(descriptor, mode) == 0;
  is_good = is_good && fsync(descriptor) == 0;
  int reason = errno;
  if (::close(descriptor) != 0 && is_good) {
    is_good = false;
    reason = errno;
  }
  if (is_good && ::rename(temporary.c_str(), place.c_str()) != 0) {
    is_good = false;
    reason = errno;
  }
  if (is_good) return;
  unlink(temporary.c_str());
  throw std::runtime_error(std::strerror(reason));
}

}  // namespace varnoth::tools
