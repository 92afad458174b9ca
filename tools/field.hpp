#pragma once

#include <optional>
#include <string_view>

namespace varnoth::tools {

/// A text without the blanks, tabs and carriage returns around it.
std::string_view Trimmed(std::string_view text);
/// Nothing if the word as a whole is no finite number. A Fortran exponent (1.5D+03) is one.
std::optional<double> NumberOf(std::string_view word);

}  // namespace varnoth::tools
