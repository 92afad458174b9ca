#pragma once

#include <cstdint>

namespace varnoth {

/// A signed span between two times: days of 86400 s, milliseconds and microseconds, 32 bits each.
/// The span is the sum of the three fields. The additions keep |milliseconds| below one day and
/// |microseconds| below one millisecond by truncating division, so that the fields may differ in
/// sign.
///
/// A span that the fields can not hold is logged and throws the text "duration range error".
class DURATION {
 public:
  DURATION() = default;
  /// Sum of days, milliseconds and microseconds, each of any size and sign.
  DURATION(std::int64_t d, std::int64_t ms, std::int64_t us);
  /// A number of seconds, |seconds| below 9.2e15; ERROR_PARAMETER beyond that and for NaN. With
  /// x = 1000 seconds the milliseconds are x towards zero and the microseconds the nearest integer
  /// to 1000 (x - floor(x)): a negative number with a fraction of a millisecond comes out one
  /// millisecond too late.
  static DURATION FromSeconds(double seconds);
  /// The same with the milliseconds by floor, so that negative numbers come out exactly.
  static DURATION FromSecondsByFloor(double seconds);

  int Days() const { return days; }
  int Milliseconds() const { return milliseconds; }
  int Microseconds() const { return microseconds; }

  void AddDays(std::int64_t count);
  /// `raw` adds to the field as it is, without carrying into days; what the field can not hold goes
  /// into the microseconds. It is the way out of a day field that is full.
  void AddMilliseconds(std::int64_t count, bool raw = false);
  void AddMicroseconds(std::int64_t count, bool raw = false);

  /// The span in seconds.
  double ToSeconds() const;
  /// The span in seconds, in extended precision: exact to far below a microsecond.
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
