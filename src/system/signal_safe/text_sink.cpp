#include "system/signal_safe/text_sink.hpp"

#include <cstring>

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
  if (!text.empty()) Add(text, text.back() == '\n');
}

void TEXT_SINK::AppendUnseen(std::string_view text) { Add(text, at_line_start); }

void TEXT_SINK::EndLine() {
  if (!at_line_start) Append("\n");
}

void TEXT_SINK::Add(std::string_view text, bool line_starts) {
  if (text.size() > SIZE - filled) Flush();
  const bool fits = text.size() <= SIZE;
  if (fits) std::memcpy(bytes + filled, text.data(), text.size());
  // A handler finds all of the text or none of it.
  const UNINTERRUPTED whole(descriptor);
  fits ? void(filled += text.size()) : Write(text);
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
