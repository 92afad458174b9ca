#include "system/signal_safe/text_sink.hpp"

#include <cstring>
#include <iterator>

#include "system/signal_safe/descriptor.hpp"
#include "system/signal_safe/uninterrupted.hpp"

namespace varnoth {

void TEXT_SINK::Open(int open_descriptor) {
  const UNINTERRUPTED whole;
  descriptor = open_descriptor;
  failed = false;
  at_line_start = true;
  filled = 0;
}

bool TEXT_SINK::Close() {
  const UNINTERRUPTED whole;
  const bool complete = Flush();
  const bool closed = CloseDescriptor(descriptor);
  descriptor = -1;
  return closed && complete;
}

void TEXT_SINK::Append(std::string_view text) {
  if (!text.empty()) Append({text});
}

void TEXT_SINK::Append(std::initializer_list<std::string_view> pieces) {
  Add(pieces, std::prev(pieces.end())->back() == '\n');
}

void TEXT_SINK::AppendUnseen(std::string_view text) { Add({text}, at_line_start); }

void TEXT_SINK::EndLine() {
  if (!at_line_start) Append("\n");
}

void TEXT_SINK::Add(std::initializer_list<std::string_view> pieces, bool line_starts) {
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  if (size > SIZE - filled) Flush();
  const bool fits = size <= SIZE;
  if (fits) {
    char* end = bytes + filled;
    for (const std::string_view piece : pieces) {
      std::memcpy(end, piece.data(), piece.size());
      end += piece.size();
    }
  }
  // A handler finds all of the pieces or none of them.
  const UNINTERRUPTED whole(descriptor);
  if (fits) {
    filled += size;
  } else {
    for (const std::string_view piece : pieces) Write(piece);
  }
  at_line_start = line_starts;
}

bool TEXT_SINK::Flush() {
  if (filled > 0) {
    // A handler must neither lose the buffer nor write it twice.
    const UNINTERRUPTED whole(descriptor);
    Write({bytes, filled});
    filled = 0;
  }
  return !failed;
}

void TEXT_SINK::Write(std::string_view text) {
  std::size_t written = 0;
  if (!WriteAll(descriptor, text.data(), text.size(), written)) failed = true;
}

bool TEXT_SINK::TakesBytes() const { return varnoth::TakesBytes(descriptor); }

}  // namespace varnoth
