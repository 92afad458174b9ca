#include "tools/whole_file.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace varnoth::tools {

namespace {

[[noreturn]] void Throw(int reason) { throw std::runtime_error(std::strerror(reason)); }

}  // namespace

unsigned CreationMask() {
  const mode_t mask = umask(0);  // the only way to read it
  umask(mask);
  return mask;
}

WHOLE_FILE::WHOLE_FILE(const std::string& file) : place(file) {
  struct stat old {};
  const bool is_there = stat(file.c_str(), &old) == 0;
  if (is_there && !S_ISREG(old.st_mode)) throw std::runtime_error("not an ordinary file");
  // What a link leads to is replaced, not the link.
  if (is_there) place = std::filesystem::canonical(file).string();
  mode = is_there ? old.st_mode & 07777 : 0666 & ~CreationMask();
  temporary = place + ".XXXXXX";
  descriptor = mkstemp(temporary.data());
  if (descriptor < 0) Throw(errno);
}

WHOLE_FILE::~WHOLE_FILE() {
  if (descriptor >= 0) ::close(descriptor);
  if (!temporary.empty()) unlink(temporary.c_str());
}

void WHOLE_FILE::Write(std::string_view content) {
  while (!content.empty()) {
    const ssize_t count = ::write(descriptor, content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Throw(errno);
    content.remove_prefix(static_cast<std::size_t>(count));
  }
}

void WHOLE_FILE::Finish() {
  if (fchmod(descriptor, mode) != 0 || fsync(descriptor) != 0) Throw(errno);
  if (::close(std::exchange(descriptor, -1)) != 0) Throw(errno);
  if (::rename(temporary.c_str(), place.c_str()) != 0) Throw(errno);
  temporary.clear();
}

void WriteWholeFile(const std::string& file, const std::string& content) {
  WHOLE_FILE whole(file);
  whole.Write(content);
  whole.Finish();
}

}  // namespace varnoth::tools
