#pragma once

#include <span>

#include "pool/parameter_pool.hpp"

namespace varnoth {

/// The texts that an entry or a value may have.
///
///     constexpr const char* MODES[] = {"single_pass", "dual_pass"};
///     STRING mode;
///     ReadEnumeration(pool, "observation_mode", MODES, mode);
using VALID_TEXTS = std::span<const char* const>;

/// "Valid values are: ", then each text in single quotes with a blank after it.
STRING ValidValues(VALID_TEXTS valid);

/// Reads a text that must be exactly one of a list. Throws what PARAMETER_POOL::Read throws and,
/// for any other text, INVALID_PARAMETER_VALUE after a line at ALARM with key, file, value and
/// list. On failure the value stays as it was.
void ReadEnumeration(PARAMETER_POOL& pool, const char* key, VALID_TEXTS valid, STRING& value);

/// Writes the line at ALARM for an entry whose value is not in its list.
void LogInvalidText(const PARAMETER_POOL& pool, const char* key, const STRING& value,
                    const STRING& valid_values);

}  // namespace varnoth
