#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace varnoth {

/// An open file or the screen, behind a fixed buffer of 8192 bytes. A signal handler may write into
/// a sink that it interrupted: the buffer holds the complete texts appended so far, and they go out
/// before the handler's own text.
///
///     TEXT_SINK screen(1);
///     screen.Append("done\n");
///     if (!screen.Flush()) return false;
class TEXT_SINK {
 public:
  /// A sink without a file.
  constexpr TEXT_SINK() = default;
  constexpr explicit TEXT_SINK(int open_descriptor) : descriptor(open_descriptor) {}

  bool IsOpen() const { return descriptor >= 0; }
  /// Takes an open descriptor and empties the buffer; does not close the former descriptor.
  void Open(int open_descriptor);
  /// Flushes and closes; false if the close or any write since the opening failed.
  bool Close();

  /// Adds text to the buffer; first flushes a buffer without room for it. A text that is longer
  /// than the buffer goes straight to the file.
  void Append(std::string_view text);
  /// Adds pieces as one text, of which a handler finds all or nothing. The last one is not empty.
  void Append(std::initializer_list<std::string_view> pieces);
  /// Adds text that takes no room on a line, such as an escape sequence.
  void AppendUnseen(std::string_view text);
  /// Ends the current line if it has text.
  void EndLine();
  /// Writes the buffer; false if any write since the opening failed.
  bool Flush();

  /// Whether a flush can go ahead now, without waiting.
  bool TakesBytes() const;

 private:
  static constexpr std::size_t SIZE = 8192;

  void Add(std::initializer_list<std::string_view> pieces, bool line_starts);
  void Write(std::string_view text);

  int descriptor = -1;
  bool failed = false;
  bool at_line_start = true;
  std::size_t filled = 0;
  char bytes[SIZE];  ///< not zeroed: most of its pages are never touched
};

}  // namespace varnoth
