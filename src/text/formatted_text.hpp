#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

namespace varnoth {

/// std::vsnprintf, several times as fast for formats of "%d", "%ld", "%s", "%f", "%lf" and "%e"
/// with a plus sign, a width and a precision at most. Every other format, and a text that does not
/// fit, is left to std::vsnprintf.
int FormatText(char* buffer, std::size_t size, const char* format, std::va_list arguments);

/// The same text, whole, whatever its length; empty if the arguments can't be shown.
std::string FormattedText(const char* format, std::va_list arguments);

}  // namespace varnoth
