#pragma once

#include <cstddef>
#include <fstream>
#include <vector>

namespace varnoth {

/// A file stream that can step whole lines forward and backward. It holds no index of the file: a
/// step reads the file in blocks around the position and counts line ends.
class LINE_STREAM : public std::fstream {
 public:
  explicit LINE_STREAM(std::size_t block = 512) : buffer(block) {}

  /// Goes `-lines` lines back from the line of the position, to the start of that line. False, with
  /// the position as it was, if the file does not go back so far.
  bool StepBack(int lines);
  /// Goes `lines` lines forward to the start of that line. False, at the end of the file, if there
  /// are not as many line ends.
  bool StepForward(int lines);
  /// The position; the end of the file, met by a reader, is no hindrance.
  std::streamoff Position();

 private:
  /// Reads the block at a position; false if there is nothing to be read.
  bool Load(std::streamoff start, std::size_t size);

  std::vector<char> buffer;
  std::streamoff buffer_start = 0;
  std::size_t buffer_fill = 0;
};

}  // namespace varnoth
