#pragma once

#include <string>
#include <string_view>

namespace varnoth::bench {

/// A file in the system's temporary directory; the object removes it.
class POOL_FILE {
 public:
  explicit POOL_FILE(const std::string& content);
  ~POOL_FILE();
  POOL_FILE(const POOL_FILE&) = delete;
  POOL_FILE& operator=(const POOL_FILE&) = delete;
  const char* Path() const { return path.c_str(); }

 private:
  std::string path;
};

/// An orbit on a circle, a sample every ten seconds, with the keys that GENERAL_ORBIT reads.
std::string OrbitText(int samples, int order);

/// Silences the log, so that the measured code formats no line.
void ShowNothing();

}  // namespace varnoth::bench
