#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/import/scene.hpp"

namespace varnoth::tools {

constexpr std::int64_t MICROSECONDS_OF_SECOND = 1000000;
constexpr std::int64_t MICROSECONDS_OF_DAY = 86400 * MICROSECONDS_OF_SECOND;

/// Nothing if there is no such day, or none of the years 1970 to 2099.
std::optional<std::int64_t> DayOf(int year, int month, int day);

/// A time such as "2025-04-06T02:20:09.449360", a blank in the place of the "T" and a "Z" behind it
/// allowed, rounded to the microsecond. Nothing for any other text.
std::optional<MOMENT> MomentFromText(std::string_view text);

/// The moment some microseconds later, of days without a leap second.
MOMENT Later(const MOMENT& moment, std::int64_t microseconds);

/// Microseconds that pass from one moment to another, leap seconds counted.
std::int64_t MicrosecondsBetween(const MOMENT& from, const MOMENT& to);

/// TAI - UTC in seconds, by the product's leap second table and the leap second of the end of 2016,
/// which it lacks.
std::int64_t TaiMinusUtc(const MOMENT& moment);

/// "06-APR-2025/02:19:03.324203", as a pool's epochs are written.
std::string PoolTime(const MOMENT& moment);
/// "2025-04-06T02:19:03.324203", for messages.
std::string IsoTime(const MOMENT& moment);

}  // namespace varnoth::tools
