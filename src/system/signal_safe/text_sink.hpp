#pragma once

#include <cstddef>
#include <string_view>

namespace varnoth {

/// An open file or the screen, with a fixed buffer ahead of it. A signal handler may write into a
/// sink that it interrupted: what had been appended completely is in the buffer and goes ahead of
/// its own text.
class TEXT_SINK {
 public:
  /// Without a file.
  constexpr TEXT_SINK() = default;
  constexpr explicit TEXT_SINK(int open_descriptor) : descriptor(open_descriptor) {}

  bool IsOpen() const { return descriptor >= 0; }
  /// Takes an open descriptor; what was open is not closed.
  void Open(int open_descriptor);
  /// Flushes and closes; false if anything since the opening could not be written.
  bool Close();

  /// Adds text to the buffer, and writes what does not fit.
  void Append(std::string_view text);
  /// Adds what takes no place on a line, such as an escape sequence.
  void AppendUnseen(std::string_view text);
  /// Ends a line that has been begun.
  void EndLine();
  /// Writes the buffer; false if anything since the opening could not be written.
  bool Flush();

  /// Whether a flush would not wait now.
  bool TakesBytes() const;

 private:
  static constexpr std::size_t SIZE = 8192;

  void Add(std::string_view text, bool line_starts);
  void Write(std::string_view text);

  int descriptor = -1;
  bool failed = false;
  bool at_line_start = true;
  std::size_t filled = 0;
  char bytes[SIZE] = {};
};

}  // namespace varnoth
