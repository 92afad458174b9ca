#pragma once

#include "foundation/errors.hpp"

namespace varnoth {

/// The number that `count` decimal digits at `text` spell (at most nine). Throws ERROR_ARGUMENT,
/// with no log line, at the first character that is no digit, and reads nothing after it.
///
///     const int year = ReadDigits("2004-01-14", 4);
inline int ReadDigits(const char* text, int count) {
  int value = 0;
  for (int i = 0; i < count; ++i) {
    if (text[i] < '0' || text[i] > '9') throw ERROR_ARGUMENT();
    value = 10 * value + (text[i] - '0');
  }
  return value;
}

/// Writes a number as exactly `count` decimal digits (at most nine) to `text`, without a
/// terminator. False, with the text as it was, if the number has more digits or is negative.
inline bool WriteDigits(char* text, int count, int value) {
  int limit = 1;
  for (int i = 0; i < count; ++i) limit *= 10;
  if (value < 0 || value >= limit) return false;
  for (int i = count; i-- > 0; value /= 10) text[i] = static_cast<char>('0' + value % 10);
  return true;
}

}  // namespace varnoth
