#pragma once

#include <cstdint>

namespace varnoth {

/// A signed span between two times: days of 86400 s, milliseconds and microseconds, 32 bits each.
///
///     DURATION span(0, 1500, 250);  // 1.50025 s
///     span.AddDays(2);
///     const double seconds = span.ToSeconds();
///
/// The span is the sum of the three fields. The additions keep |milliseconds| below one day and
/// |microseconds| below one millisecond by truncating division, so the fields may differ in sign.
///
/// An operation whose result has more than 2147483645 days of either sign throws the text "duration
/// range error", after a line at ALARM, and leaves the span undefined.
class DURATION {
 public:
  DURATION() = default;
  /// Sum of days, milliseconds and microseconds of any sign.
  DURATION(std::int64_t d, std::int64_t ms, std::int64_t us);
  /// A number of seconds. Throws ERROR_PARAMETER, with no log line, for NaN and for |seconds| of
  /// 9223372036854775 or more. With x = 1000 seconds, the milliseconds are x rounded towards zero
  /// and the microseconds are 1000 (x - floor(x)) rounded to the nearest integer: a negative number
  /// with a fraction of a millisecond gives a span that is one millisecond too large.
  static DURATION FromSeconds(double seconds);
  /// The same, but with floor(x) milliseconds: right for negative numbers too.
  static DURATION FromSecondsByFloor(double seconds);

  int Days() const { return days; }
  int Milliseconds() const { return milliseconds; }
  int Microseconds() const { return microseconds; }

  void AddDays(std::int64_t count);
  /// With `raw` the sum stays in the field, without a carry into larger ones. A raw sum of
  /// 2147483000 or more (microseconds: above it) throws "duration range error". The additions don't
  /// check the lower end: a raw sum of -2147483000 ms or less, or one of microseconds that falls
  /// below the range of 32 bits, gives a wrong span.
  void AddMilliseconds(std::int64_t count, bool raw = false);
  void AddMicroseconds(std::int64_t count, bool raw = false);

  /// The span in seconds.
  double ToSeconds() const;
  /// The span in seconds, in extended precision: with 64 bits of mantissa the error stays below
  /// 0.1 microseconds within 10000 years.
  long double ToExtendedSeconds() const;

  bool operator==(const DURATION& other) const = default;

 private:
  [[noreturn]] void Refuse() const;
  std::int64_t Sum(std::int64_t a, std::int64_t b) const;
  std::int64_t Product(std::int64_t a, std::int64_t b) const;

  std::int32_t days = 0;
  std::int32_t milliseconds = 0;
  std::int32_t microseconds = 0;
};

static_assert(sizeof(DURATION) == 12);

}  // namespace varnoth
