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

bool LINE_STREAM::GoTo(std::streamoff position) {
  clear();
  seekg(position);
  return good();
}

bool LINE_STREAM::GoToEnd() {
  clear();
  seekg(0, end);
  const std::streamoff size = Position();
  const bool is_whole = size <= 0 || (Load(size - 1, 1) && buffer[0] == '\n');
  GoTo(size);
  return is_whole;
}

bool LINE_STREAM::StepBack(int lines) {
  const std::streamoff position = Position();
  const std::int64_t wanted = -std::int64_t{lines};
  std::int64_t ends = 0;
  for (std::streamoff block_end = position; block_end > 0; block_end = buffer_start) {
    const auto size = std::min(block_end, static_cast<std::streamoff>(buffer.size()));
    if (!Load(block_end - size, static_cast<std::size_t>(size))) {
      GoTo(position);
      return false;
    }
    for (std::size_t i = buffer_fill; i-- > 0;) {
      // Count one line end more than lines: the one in front of the wanted line.
      if (buffer[i] != '\n' || ++ends <= wanted) continue;
      return GoTo(buffer_start + static_cast<std::streamoff>(i) + 1);
    }
  }
  const bool is_first_line = ends == wanted;
  return GoTo(is_first_line ? 0 : position) && is_first_line;
}

bool LINE_STREAM::StepForward(int lines) {
  const std::streamoff position = Position();
  if (lines <= 0) return true;
  std::int64_t ends = 0;
  for (std::streamoff start = position; Load(start, buffer.size());
       start += static_cast<std::streamoff>(buffer_fill)) {
    for (std::size_t i = 0; i < buffer_fill; ++i) {
      if (buffer[i] != '\n' || ++ends < lines) continue;
      return GoTo(start + static_cast<std::streamoff>(i) + 1);
    }
  }
  GoTo(position);
  return false;
}

}  // namespace varnoth
