#include "system/temporary_file.hpp"

#include <unistd.h>

#include <cstdlib>

#include "system/signal_safe/restarted.hpp"

namespace varnoth {

namespace {

std::string CreateIn(std::string directory, const char* prefix) {
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  return CreateUniqueFile(directory + "/" + prefix + "XXXXXX");
}

}  // namespace

std::string CreateUniqueFile(const std::string& pattern) {
  std::string path;
  const int descriptor = Restarted([&] {
    path = pattern;  // a failed try may leave other characters
    return mkstemp(path.data());
  });
  if (descriptor < 0) return {};
  ::close(descriptor);
  return path;
}

std::string CreateTemporaryFile(const char* directory, const char* prefix) {
  if (const char* preferred = secure_getenv("TMPDIR"); preferred != nullptr && *preferred != '\0') {
    if (std::string path = CreateIn(preferred, prefix); !path.empty()) return path;
  }
  return CreateIn(directory, prefix);
}

}  // namespace varnoth
