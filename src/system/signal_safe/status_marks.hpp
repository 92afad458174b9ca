#pragma once

#include <cstddef>

namespace varnoth {

/// The longest name or path of a run's files, in characters.
inline constexpr std::size_t PATH_LIMIT = 255;

/// What failed in a change of marks.
struct MARK_FAULTS {
  bool is_left = false;     ///< the old mark could not be removed
  bool is_missing = false;  ///< the new mark could not be written
};

/// Shows a run's success or failure: removes one mark, and writes the other with the status, a
/// digit from 0 to 9, as its whole content. An empty path means no mark. A repetition changes
/// nothing.
///
///     const MARK_FAULTS faults = ChangeMarks("OK.varnoth", "ERROR.varnoth", 1);
///     if (faults.is_missing) GlobalLog.printf_line(WARNING, "no failure mark");
MARK_FAULTS ChangeMarks(const char* old_mark, const char* new_mark, int status);

}  // namespace varnoth
