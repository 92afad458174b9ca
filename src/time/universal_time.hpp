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
/// with years 0000 to 9999. The second is 60 and above only at a leap second. A default value is
/// the empty text. Every operation reads the digits and writes them back: reading a field that
/// holds no digits throws ERROR_ARGUMENT; a result that the text can't show is logged and throws
/// ERROR_DATA, and the value then stays as it was.
class UNIVERSAL_TIME {
 public:
  UNIVERSAL_TIME() = default;
  /// Any of the text forms of UTC_SCANNER; a text that is none is logged and throws ERROR_DATA.
  explicit UNIVERSAL_TIME(const char* source);
  /// Real seconds, leap seconds included, since 06-JAN-1980/00:00:00, to the nearest microsecond.
  /// Throws ERROR_PARAMETER for NaN and for what 64 bits of microseconds can't hold.
  explicit UNIVERSAL_TIME(double seconds);
  explicit UNIVERSAL_TIME(const UTC_VALUES& values) { Format(values); }

  /// The system clock to the second, in local time and in UTC.
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
  /// The second's fraction in microseconds, 0 to 999999.
  int Fraction() const;

  /// The writers put as many leading characters of the number into the text as the field has and
  /// check nothing.
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
/// Reads the rest of a line behind white space, at most 255 characters of it, as one text. A stream
/// that has nothing left fails as the empty text does: ERROR_DATA.
std::istream& operator>>(std::istream& stream, UNIVERSAL_TIME& time);

/// The time as parameter pools show it, YYYY-MM-DDTHH:MM:SS.ffffff with as many digits of the
/// fraction as told (0 to 6; without point for 0) and a final "Z" where wanted.
STRING ToPoolText(const UNIVERSAL_TIME& time, int digits, bool zulu);

}  // namespace varnoth
