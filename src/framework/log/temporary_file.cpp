#include "framework/log/temporary_file.hpp"

#include <unistd.h>

#include <cstdlib>

namespace varnoth {

namespace {

std::string CreateIn(std::string directory, const char* prefix) {
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  std::string path = directory + "/" + prefix + "XXXXXX";
  const int descriptor = mkstemp(path.data());
  if (descriptor < 0) return {};
  ::close(descriptor);
  return path;
}

}  // namespace

std::string CreateTemporaryFile(const char* directory, const char* prefix) {
  if (const char* preferred = secure_getenv("TMPDIR"); preferred != nullptr && *preferred != '\0') {
    if (std::string path = CreateIn(preferred, prefix); !path.empty()) return path;
  }
  return CreateIn(directory, prefix);
}

}  // namespace varnoth
