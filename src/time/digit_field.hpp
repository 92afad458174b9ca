#pragma once

#include "foundation/errors.hpp"

namespace varnoth {

/// The number that `count` decimal digits at `text` spell (at most nine digits). A character that
/// is no digit throws ERROR_ARGUMENT; nothing behind it is read.
inline int ReadDigits(const char* text, int count) {
  int value = 0;
  for (int i = 0; i < count; ++i) {
    if (text[i] < '0' || text[i] > '9') throw ERROR_ARGUMENT();
    value = 10 * value + (text[i] - '0');
  }
  return value;
}

/// Writes a number as exactly `count` decimal digits to `text`; false, with the text as it was, if
/// it has more or is negative.
inline bool WriteDigits(char* text, int count, int value) {
  int limit = 1;
  for (int i = 0; i < count; ++i) limit *= 10;
  if (value < 0 || value >= limit) return false;
  for (int i = count; i-- > 0; value /= 10) text[i] = static_cast<char>('0' + value % 10);
  return true;
}

}  // namespace varnoth
