#pragma once

#include <initializer_list>

#include "pool/parameter_pool_read_write_change.hpp"
#include "time/universal_time.hpp"

namespace varnoth {

/// Universal times as pool entries: texts, whose key is joined of up to seven parts. Any form that
/// the scanner takes is read; written is the form "2004-01-14T10:11:12.000000" with 0 to 6 digits
/// of the fraction.
///
/// They throw what the pool throws, PARAMETER_KEY_TOO_LONG, and ERROR_DATA for a text that is no
/// time.
using KEY_PARTS = std::initializer_list<const char*>;

void ReadTime(PARAMETER_POOL& pool, KEY_PARTS key_parts, UNIVERSAL_TIME& time);
/// A vector of texts, which keeps its first index.
void ReadTimes(PARAMETER_POOL& pool, KEY_PARTS key_parts, ARRAY<UNIVERSAL_TIME>& times);

/// With `usecs` the six digits of the fraction also go, as an INT_32, under the key with "usecs"
/// behind it, and the text then has five of them at most.
void WriteTime(PARAMETER_POOL_READ_WRITE_CHANGE& pool, KEY_PARTS key_parts,
               const UNIVERSAL_TIME& time, int digits, bool usecs,
               const ARRAY<STRING>& comments = {});
void WriteTimes(PARAMETER_POOL_READ_WRITE_CHANGE& pool, KEY_PARTS key_parts,
                const ARRAY<UNIVERSAL_TIME>& times, int digits, const ARRAY<STRING>& comments = {});

}  // namespace varnoth
