#include "tools/message.hpp"

#include <cstdio>

namespace varnoth {

void Tell(const std::string& file, std::size_t line, SEVERITY severity, const std::string& text) {
  std::fprintf(stderr, "%s:%zu: %s: %s\n", file.c_str(), line,
               severity == SEVERITY::ERROR ? "error" : "warning", text.c_str());
}

}  // namespace varnoth
