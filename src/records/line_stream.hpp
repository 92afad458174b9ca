#pragma once

#include <cstddef>
#include <fstream>
#include <vector>

namespace varnoth {

/// A file stream that can step whole lines forward and backward. It holds no index of the file: a
/// step reads the file in blocks around the position and counts line ends.
class LINE_STREAM : public std::fstream {
 public:
  explicit LINE_STREAM(std::size_t block = 512) : buffer(block > 0 ? block : 1) {}

  /// Goes `-lines` lines back (0: none) from the line of the position, to the start of that line.
  /// False, with the position as it was, if the file does not go back so far.
  bool StepBack(int lines);
  /// Goes `lines` lines forward to the start of that line. False, with the position as it was, if
  /// the file has not as many line ends left.
  bool StepForward(int lines);
  /// The position; the end of the file, met by a reader, is no hindrance.
  std::streamoff Position();
  /// Goes to a position, also from behind the end of the file; false if that fails.
  bool GoTo(std::streamoff position);
  /// Goes to the end of the file; false if the last line there lacks its line end.
  bool GoToEnd();

 private:
  /// Reads the block at a position; false if there is nothing to be read.
  bool Load(std::streamoff start, std::size_t size);

  std::vector<char> buffer;
  std::streamoff buffer_start = 0;
  std::size_t buffer_fill = 0;
};

}  // namespace varnoth
