#include "system/temporary_file.hpp"

#include <fcntl.h>

#include <cstdlib>

#include "system/signal_safe/restarted.hpp"

namespace varnoth {

namespace {

TEMPORARY_FILE CreateIn(std::string directory, const char* prefix, int flags) {
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  return CreateUniqueFile(directory + "/" + prefix + "XXXXXX", flags);
}

}  // namespace

TEMPORARY_FILE CreateUniqueFile(const std::string& pattern, int flags) {
  TEMPORARY_FILE file;
  file.descriptor = Restarted([&] {
    file.path = pattern;  // a failed try may leave other characters
    return mkostemp(file.path.data(), flags | O_CLOEXEC);
  });
  if (file.descriptor < 0) file.path.clear();
  return file;
}

TEMPORARY_FILE CreateTemporaryFile(const char* directory, const char* prefix, int flags) {
  if (const char* preferred = secure_getenv("TMPDIR"); preferred != nullptr && *preferred != '\0') {
    if (TEMPORARY_FILE file = CreateIn(preferred, prefix, flags); !file.path.empty()) return file;
  }
  return CreateIn(directory, prefix, flags);
}

}  // namespace varnoth
