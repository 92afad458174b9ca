#pragma once

#include <initializer_list>

#include "foundation/pairs.hpp"
#include "foundation/string.hpp"

namespace varnoth {

/// Throws PARAMETER_KEY_TOO_LONG, after a line at ALARM, for a key of more than 100 characters.
void CheckKeyLength(const char* key);

/// Joins the non-empty parts of a pool key with "_"; a null part is empty. Throws like
/// CheckKeyLength; `result` then stays as it was.
void join_key(STRING& result, std::initializer_list<const char*> parts);
/// The same, but returns the key.
///
///     const STRING key = join_key({"master", nullptr, "start_time"});  // "master_start_time"
STRING join_key(std::initializer_list<const char*> parts);

/// The first text of a pair or, with `second` true, the second.
STRING select_part(const TUPLE<STRING>& tuple, bool second);

}  // namespace varnoth
