#pragma once

#include <initializer_list>

#include "pool/parameter_pool_read_write_change.hpp"
#include "time/universal_time.hpp"

namespace varnoth {

/// Universal times as pool entries of type STR or STR_V. The operations join the key from parts.
///
///     UNIVERSAL_TIME start;
///     ReadTime(pool, {"master", "start_time"}, start);  // key "master_start_time"
///     WriteTime(results, {"start_time"}, start, 6, false);
///
/// The readers take any form that UTC_SCANNER knows. The writers use "2004-01-14T10:11:12.000000"
/// with `digits`, 0 to 6, digits of the fraction.
///
/// All of them throw what the pool throws and PARAMETER_KEY_TOO_LONG. The readers also throw
/// ERROR_DATA, after a line at EXCEPTION, for a text that is no time, and the writers
/// ERROR_ARGUMENT for an empty time.
using KEY_PARTS = std::initializer_list<const char*>;

/// On failure the time stays as it was.
void ReadTime(PARAMETER_POOL& pool, KEY_PARTS key_parts, UNIVERSAL_TIME& time);
/// Reads a vector of texts; the array takes the file's first index and count. A text that is no
/// time leaves the array resized and partly filled.
void ReadTimes(PARAMETER_POOL& pool, KEY_PARTS key_parts, ARRAY<UNIVERSAL_TIME>& times);

/// Writes a time whether the pool has the key or not. With `usecs` it also writes the fraction in
/// microseconds, 0 to 999999, as an INT_32 under the key with "_usecs" appended; the text then has
/// at most five digits of the fraction.
void WriteTime(PARAMETER_POOL_READ_WRITE_CHANGE& pool, KEY_PARTS key_parts,
               const UNIVERSAL_TIME& time, int digits, bool usecs,
               const ARRAY<STRING>& comments = {});
/// Writes a vector of texts with the array's first index.
void WriteTimes(PARAMETER_POOL_READ_WRITE_CHANGE& pool, KEY_PARTS key_parts,
                const ARRAY<UNIVERSAL_TIME>& times, int digits, const ARRAY<STRING>& comments = {});

}  // namespace varnoth
