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

}  // namespace varnoth
