#pragma once

#include <cstddef>

namespace varnoth {

/// The longest name or path that a run has for its files, in characters.
inline constexpr std::size_t PATH_LIMIT = 255;

/// What of a change of marks did not come about.
struct MARK_FAULTS {
  bool is_left = false;     ///< the mark that had to go still stands
  bool is_missing = false;  ///< the mark that had to come can't be written
};

/// Makes a run's success or failure seen: takes one mark away, and writes the other with the status
/// as its whole content. An empty path is no mark. Doing it again changes nothing.
MARK_FAULTS ChangeMarks(const char* old_mark, const char* new_mark, int status);

}  // namespace varnoth
