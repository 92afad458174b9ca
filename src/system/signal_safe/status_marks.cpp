#include "system/signal_safe/status_marks.hpp"

#include <unistd.h>

#include <cerrno>

#include "system/signal_safe/descriptor.hpp"

namespace varnoth {

MARK_FAULTS ChangeMarks(const char* old_mark, const char* new_mark, int status) {
  MARK_FAULTS faults;
  const char digit = static_cast<char>('0' + status);
  if (*old_mark != '\0') faults.is_left = ::unlink(old_mark) != 0 && errno != ENOENT;
  if (*new_mark != '\0') faults.is_missing = !ReplaceFile(new_mark, {&digit, 1});
  return faults;
}

}  // namespace varnoth
