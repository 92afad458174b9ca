#pragma once

#include <cstddef>
#include <fstream>
#include <vector>

namespace varnoth {

/// A file stream that steps whole lines forward and backward.
///
///     LINE_STREAM stream;
///     stream.open("orbit.mdb", std::ios::in);
///     std::string line;
///     if (stream.GoToEnd() && stream.StepBack(-1)) std::getline(stream, line);  // the last one
///
/// It holds no index of the file: a step reads the file in blocks of `block` bytes from the
/// position on and counts line ends (LF). The steps throw nothing and log nothing.
class LINE_STREAM : public std::fstream {
 public:
  explicit LINE_STREAM(std::size_t block = 512) : buffer(block > 0 ? block : 1) {}

  /// Goes `-lines` lines back from the line of the position, to a line's start; `lines` is
  /// negative, or 0 for the start of the current line. False, with the position as it was, if the
  /// file has fewer lines in front.
  bool StepBack(int lines);
  /// Goes `lines` lines forward to a line's start; does nothing for 0 and below. False, with the
  /// position as it was, if fewer line ends follow.
  bool StepForward(int lines);
  /// The position, also after a read has met the end of the file.
  std::streamoff Position();
  /// Goes to a position, also after a read has met the end of the file; false on failure.
  bool GoTo(std::streamoff position);
  /// Goes to the end of the file; false if the last line lacks its line end.
  bool GoToEnd();

 private:
  /// Reads the block at a position; false if it gets no byte.
  bool Load(std::streamoff start, std::size_t size);

  std::vector<char> buffer;
  std::streamoff buffer_start = 0;
  std::size_t buffer_fill = 0;
};

}  // namespace varnoth
