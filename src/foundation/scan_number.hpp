#pragma once

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <string>
#include <type_traits>

#include "system/floating_point_traps.hpp"

namespace varnoth {

/// std::from_chars, also with standard libraries that have it for whole numbers only (libc++ 14).
///
///     double value = 0.0;
///     const auto [stop, error] = ScanNumber(text, text + length, value);
///     if (error != std::errc()) return false;
template <class NUMBER>
std::from_chars_result ScanNumber(const char* first, const char* last, NUMBER& value) {
#ifdef __cpp_lib_to_chars
  return std::from_chars(first, last, value);
#else
  if constexpr (std::is_floating_point_v<NUMBER>) {
    const std::string text(first, last);
    // strtod also reads blanks and a plus sign ahead of a number, and hexadecimal ones.
    const bool is_other =
        text.find_first_of(" \t\n\v\f\r+") == 0 || text.find_first_of("xX") != text.npos;
    char* stop = nullptr;
    const HELD_TRAPS held;
    errno = 0;
    const double number = std::strtod(text.c_str(), &stop);
    const auto length = stop - text.c_str();
    if (length == 0 || is_other) return {first, std::errc::invalid_argument};
    if (errno == ERANGE) return {first + length, std::errc::result_out_of_range};
    value = static_cast<NUMBER>(number);
    return {first + length, std::errc()};
  } else {
    return std::from_chars(first, last, value);
  }
#endif
}

}  // namespace varnoth
