#pragma once

#include <iosfwd>
#include <type_traits>

#include "foundation/string.hpp"
#include "time/duration.hpp"
#include "time/leap_seconds.hpp"  // the table must outlive every static time
#include "time/utc_values.hpp"

namespace varnoth {

/// A UTC date and clock time to the microsecond that knows leap seconds, held as its text
///
///     DD-MMM-YYYY/HH:MM:SS.mmmuuu        for example 31-DEC-1998/23:59:60.000000
///
/// with years 0000 to 9999, and used like this:
///
///     UNIVERSAL_TIME time("2004-01-14T10:11:12.5");
///     time += DURATION(0, 1500, 0);
///     const double elapsed = (time - UNIVERSAL_TIME("2004-01-14T10:11:12")).ToSeconds();  // 2 s
///
/// Arithmetic arrives at second 60 only at a leap second of the table. A source text may have
/// second 60 to 62 at the end of any day. A default value is the empty text.
///
/// Every operation reads the digits and writes them back: a field without digits, as in an empty
/// value, throws ERROR_ARGUMENT with no log line. A result that the text can't show throws
/// ERROR_DATA, after a line at ALARM, and the value stays as it was.
class UNIVERSAL_TIME {
 public:
  UNIVERSAL_TIME() = default;
  /// Reads any text form of UTC_SCANNER; any other text throws ERROR_DATA, after lines at
  /// EXCEPTION.
  explicit UNIVERSAL_TIME(const char* source);
  /// Real seconds, leap seconds included, since 06-JAN-1980/00:00:00, to the nearest microsecond.
  /// Throws ERROR_PARAMETER, with no log line, for NaN and for |seconds| of 9223372036854 or more,
  /// and ERROR_DATA, after a line at ALARM, for a time outside the years 0000 to 9999.
  explicit UNIVERSAL_TIME(double seconds);
  explicit UNIVERSAL_TIME(const UTC_VALUES& values) { Format(values); }

  /// The system clock, truncated to the second, in local time and in UTC.
  static UNIVERSAL_TIME Now();
  static UNIVERSAL_TIME NowUtc();

  const char* c_str() const { return text; }
  bool IsEmpty() const { return text[0] == '\0'; }

  int Day() const;
  int Month() const;
  int Year() const;
  int Hour() const;
  int Minute() const;
  int Second() const;
  int Millisecond() const;
  int Microsecond() const;
  /// The fraction of the second in microseconds, 0 to 999999.
  int Fraction() const;

  /// The setters check nothing: each writes the first characters of the number, padded with zeros,
  /// that fit its field. An empty value stays empty for all but `SetDay`.
  void SetDay(int day);
  void SetMonth(int month);
  void SetYear(int year);
  void SetHour(int hour);
  void SetMinute(int minute);
  void SetSecond(int second);
  void SetMillisecond(int ms);
  void SetMicrosecond(int us);
  void SetFraction(int us);

  UTC_VALUES Split() const;
  void Format(const UTC_VALUES& values);
  void Format(int year, int month, int day, int hour, int minute, int second, int ms, int us);

  /// Move the time by real seconds: the leap seconds of the table on the way count.
  UNIVERSAL_TIME& operator+=(const DURATION& span);
  UNIVERSAL_TIME& operator-=(const DURATION& span);
  /// Seconds as DURATION::FromSeconds reads them.
  UNIVERSAL_TIME& operator+=(double seconds) { return *this += DURATION::FromSeconds(seconds); }
  /// One second forward or back.
  UNIVERSAL_TIME& operator++();
  UNIVERSAL_TIME operator++(int);
  UNIVERSAL_TIME& operator--();
  UNIVERSAL_TIME operator--(int);

  friend UNIVERSAL_TIME operator+(UNIVERSAL_TIME a, const DURATION& span) { return a += span; }
  friend UNIVERSAL_TIME operator-(UNIVERSAL_TIME a, const DURATION& span) { return a -= span; }
  /// The span from b to a, the leap seconds between them included.
  friend DURATION operator-(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b);

  /// Equality is that of the texts; the order is that of IsEarlier.
  friend bool operator==(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b);
  friend bool operator<(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b);
  friend bool operator>(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b) { return b < a; }
  friend bool operator<=(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b) {
    return a == b || a < b;
  }
  friend bool operator>=(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b) {
    return a == b || a > b;
  }

 private:
  void Move(std::int64_t days, std::int64_t milliseconds, std::int64_t microseconds);
  void Write(int position, int digits, int value);

  char text[28] = {};
};

static_assert(sizeof(UNIVERSAL_TIME) == 28 && std::is_trivially_copyable_v<UNIVERSAL_TIME>);

std::ostream& operator<<(std::ostream& stream, const UNIVERSAL_TIME& time);
/// Skips white space and reads the rest of the line, at most 255 characters, as one text. A stream
/// with nothing left throws ERROR_DATA, as the empty text does.
std::istream& operator>>(std::istream& stream, UNIVERSAL_TIME& time);

/// The time as parameter pools show it: YYYY-MM-DDTHH:MM:SS.ffffff with `digits` digits of the
/// fraction (0 to 6, without the point for 0) and, with `zulu`, a final "Z". For years from 1000
/// on: an earlier year is not padded, and the text then shows more of the fraction.
STRING ToPoolText(const UNIVERSAL_TIME& time, int digits, bool zulu);

}  // namespace varnoth
