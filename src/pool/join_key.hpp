#pragma once

#include <initializer_list>

#include "foundation/pairs.hpp"
#include "foundation/string.hpp"

namespace varnoth {

/// Throws PARAMETER_KEY_TOO_LONG, behind a line at ALARM, for a key of more than 100 characters.
void CheckKeyLength(const char* key);

/// Joins the non-empty parts (up to seven; a null part is empty) of a pool key with "_". Throws
/// like CheckKeyLength; `result` then stays as it was.
void join_key(STRING& result, std::initializer_list<const char*> parts);
/// The same, giving the key.
STRING join_key(std::initializer_list<const char*> parts);

/// The first text of a pair or, with `second` true, the second.
STRING select_part(const TUPLE<STRING>& tuple, bool second);

}  // namespace varnoth
