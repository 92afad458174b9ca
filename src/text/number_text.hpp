#pragma once

#include <charconv>

namespace varnoth {

/// The text of a number with `digits` digits after the point, byte for byte that of printf's
/// "%.*f", several times as fast. Like std::to_chars it writes no terminating zero, and fails if
/// the text does not fit.
///
///     char text[64];
///     const auto [end, error] = FixedText(text, std::end(text), 12.5, 2);  // "12.50"
std::to_chars_result FixedText(char* first, char* last, double value, int digits);

/// The same in scientific notation, as "%.*e" shows it: "1.25e+01".
std::to_chars_result ScientificText(char* first, char* last, double value, int digits);

}  // namespace varnoth
