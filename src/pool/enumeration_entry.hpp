#pragma once

#include <span>

#include "pool/parameter_pool.hpp"

namespace varnoth {

/// Texts that an entry or a value may have.
using VALID_TEXTS = std::span<const char* const>;

/// "Valid values are: " and each text in single quotes with a blank behind it.
STRING ValidValues(VALID_TEXTS valid);

/// Reads a text that has to be one of a list, compared exactly. Throws what the pool throws and,
/// behind a line at ALARM with key, file, value and list, INVALID_PARAMETER_VALUE for any other
/// text; the value then stays as it was.
void ReadEnumeration(PARAMETER_POOL& pool, const char* key, VALID_TEXTS valid, STRING& value);

/// The line at ALARM for an entry whose value is none of its list.
void LogInvalidText(const PARAMETER_POOL& pool, const char* key, const STRING& value,
                    const STRING& valid_values);

}  // namespace varnoth
