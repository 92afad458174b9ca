#include "foundation/split.hpp"

#include <cstring>
#include <vector>

namespace varnoth {

ARRAY<STRING> Split(const char* text, const char* separators) {
  std::vector<STRING> pieces;
  const char* next = text != nullptr ? text : "";
  for (next += std::strspn(next, separators); *next != '\0';
       next += std::strspn(next, separators)) {
    const std::size_t length = std::strcspn(next, separators);
    pieces.emplace_back(next, length);
    next += length;
  }
  ARRAY<STRING> result(0, static_cast<int>(pieces.size()));
  std::copy(pieces.begin(), pieces.end(), result.begin());
  return result;
}

}  // namespace varnoth
