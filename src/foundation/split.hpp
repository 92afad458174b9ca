#pragma once

#include "foundation/array.hpp"
#include "foundation/string.hpp"

namespace varnoth {

/// The pieces of a text between any of the separator characters. A run of separators counts as one,
/// leading and trailing ones are ignored; a null or empty text has no pieces.
ARRAY<STRING> Split(const char* text, const char* separators);

}  // namespace varnoth
