#include "records/line_stream.hpp"

#include <algorithm>
#include <cstdint>

namespace varnoth {

std::streamoff LINE_STREAM::Position() {
  clear();
  return tellg();
}

bool LINE_STREAM::Load(std::streamoff start, std::size_t size) {
  seekg(start);
  read(buffer.data(), static_cast<std::streamsize>(size));
  buffer_start = start;
  buffer_fill = static_cast<std::size_t>(gcount());
  clear();
  return buffer_fill > 0;
}

bool LINE_STREAM::StepBack(int lines) {
  const std::streamoff position = Position();
  const std::int64_t wanted = -std::int64_t{lines};
  std::int64_t ends = 0;
  for (std::streamoff block_end = position; block_end > 0; block_end = buffer_start) {
    const auto size = std::min(block_end, static_cast<std::streamoff>(buffer.size()));
    if (!Load(block_end - size, static_cast<std::size_t>(size))) break;
    for (std::size_t i = buffer_fill; i-- > 0;) {
      // One line end more than lines: the one ahead of the wanted line.
      if (buffer[i] != '\n' || ++ends <= wanted) continue;
      seekg(buffer_start + static_cast<std::streamoff>(i) + 1);
      return true;
    }
  }
  const bool is_first_line = ends == wanted;
  seekg(is_first_line ? 0 : position);
  return is_first_line;
}

bool LINE_STREAM::StepForward(int lines) {
  std::int64_t ends = 0;
  std::streamoff position = Position();
  if (lines <= 0) return true;
  while (Load(position, buffer.size())) {
    for (std::size_t i = 0; i < buffer_fill; ++i) {
      if (buffer[i] != '\n' || ++ends < lines) continue;
      seekg(buffer_start + static_cast<std::streamoff>(i) + 1);
      return true;
    }
    position = buffer_start + static_cast<std::streamoff>(buffer_fill);
  }
  return false;
}

}  // namespace varnoth
