#pragma once

#include "foundation/array.hpp"
#include "foundation/string.hpp"

namespace varnoth {

/// The pieces of a text between any of the separator characters, from index 0. A run of separators
/// counts as one; leading and trailing ones don't count. A null or empty text has no pieces. Throws
/// ERROR_NO_MEMORY, std::bad_alloc or ARRAY's text if memory runs out.
///
///     const ARRAY<STRING> words = Split("/data/scene.pool", "/");  // "data", "scene.pool"
ARRAY<STRING> Split(const char* text, const char* separators);

}  // namespace varnoth
