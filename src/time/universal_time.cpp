#include "time/universal_time.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <istream>
#include <ostream>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "time/calendar.hpp"
#include "time/digit_field.hpp"
#include "time/utc_scanner.hpp"

namespace varnoth {

namespace {

constexpr char EPOCH[] = "06-JAN-1980/00:00:00.000000";
constexpr double MAX_SECONDS = 9223372036854.0;  // 2^63 us

// First position of each field in the text.
enum FIELD : int {
  DAY = 0,
  MONTH = 3,
  YEAR = 7,
  HOUR = 12,
  MINUTE = 15,
  SECOND = 18,
  MILLISECOND = 21,
  MICROSECOND = 24,
};

UNIVERSAL_TIME FromClock(std::tm* (*convert)(const std::time_t*, std::tm*)) {
  const std::time_t now = std::time(nullptr);
  std::tm clock{};
  if (convert(&now, &clock) == nullptr) throw ERROR_DATA();
  return UNIVERSAL_TIME(UTC_VALUES{clock.tm_year + 1900, clock.tm_mon + 1, clock.tm_mday,
                                   clock.tm_hour, clock.tm_min, clock.tm_sec, 0, 0});
}

}  // namespace

UNIVERSAL_TIME::UNIVERSAL_TIME(const char* source) {
  UTC_SCANNER scanner;
  scanner.Scan(source);
  Format(scanner.values);
}

UNIVERSAL_TIME::UNIVERSAL_TIME(double seconds) : UNIVERSAL_TIME(EPOCH) {
  if (!std::isless(std::fabs(seconds), MAX_SECONDS)) throw ERROR_PARAMETER();
  *this += DURATION(0, 0, static_cast<std::int64_t>(std::floor(seconds * 1e6 + 0.5)));
}

UNIVERSAL_TIME UNIVERSAL_TIME::Now() { return FromClock(localtime_r); }
UNIVERSAL_TIME UNIVERSAL_TIME::NowUtc() { return FromClock(gmtime_r); }

int UNIVERSAL_TIME::Day() const { return ReadDigits(text + DAY, 2); }
int UNIVERSAL_TIME::Month() const {
  const char name[] = {text[MONTH], text[MONTH + 1], text[MONTH + 2], '\0'};
  return MonthFromName(name);
}
int UNIVERSAL_TIME::Year() const { return ReadDigits(text + YEAR, 4); }
int UNIVERSAL_TIME::Hour() const { return ReadDigits(text + HOUR, 2); }
int UNIVERSAL_TIME::Minute() const { return ReadDigits(text + MINUTE, 2); }
int UNIVERSAL_TIME::Second() const { return ReadDigits(text + SECOND, 2); }
int UNIVERSAL_TIME::Millisecond() const { return ReadDigits(text + MILLISECOND, 3); }
int UNIVERSAL_TIME::Microsecond() const { return ReadDigits(text + MICROSECOND, 3); }
int UNIVERSAL_TIME::Fraction() const { return ReadDigits(text + MILLISECOND, 6); }

void UNIVERSAL_TIME::Write(int position, int digits, int value) {
  char number[16];
  std::snprintf(number, sizeof number, "%.*d", digits, value);
  std::memcpy(text + position, number, static_cast<std::size_t>(digits));
}

void UNIVERSAL_TIME::SetDay(int day) { Write(DAY, 2, day); }
void UNIVERSAL_TIME::SetMonth(int month) { std::memcpy(text + MONTH, MonthName(month), 3); }
void UNIVERSAL_TIME::SetYear(int year) { Write(YEAR, 4, year); }
void UNIVERSAL_TIME::SetHour(int hour) { Write(HOUR, 2, hour); }
void UNIVERSAL_TIME::SetMinute(int minute) { Write(MINUTE, 2, minute); }
void UNIVERSAL_TIME::SetSecond(int second) { Write(SECOND, 2, second); }
void UNIVERSAL_TIME::SetMillisecond(int ms) { Write(MILLISECOND, 3, ms); }
void UNIVERSAL_TIME::SetMicrosecond(int us) { Write(MICROSECOND, 3, us); }
void UNIVERSAL_TIME::SetFraction(int us) { Write(MILLISECOND, 6, us); }

UTC_VALUES UNIVERSAL_TIME::Split() const {
  UTC_VALUES values;
  values.day = Day();
  values.month = Month();
  values.year = Year();
  values.hour = Hour();
  values.minute = Minute();
  values.second = Second();
  values.millisecond = Millisecond();
  values.microsecond = Microsecond();
  return values;
}

void UNIVERSAL_TIME::Format(const UTC_VALUES& v) {
  Format(v.year, v.month, v.day, v.hour, v.minute, v.second, v.millisecond, v.microsecond);
}

void UNIVERSAL_TIME::Format(int year, int month, int day, int hour, int minute, int second, int ms,
                            int us) {
  UNIVERSAL_TIME printed;
  std::memcpy(printed.text, EPOCH, sizeof printed.text);  // brings the separators
  const char* const name = MonthName(month);
  if (std::strlen(name) == 3 && WriteDigits(printed.text + DAY, 2, day) &&
      WriteDigits(printed.text + YEAR, 4, year) && WriteDigits(printed.text + HOUR, 2, hour) &&
      WriteDigits(printed.text + MINUTE, 2, minute) &&
      WriteDigits(printed.text + SECOND, 2, second) &&
      WriteDigits(printed.text + MILLISECOND, 3, ms) &&
      WriteDigits(printed.text + MICROSECOND, 3, us)) {
    std::memcpy(printed.text + MONTH, name, 3);
    *this = printed;
    return;
  }
  GlobalLog.printf_line(
      ALARM, "UNIVERSAL_TIME: no text can show the time %.2d-%3s-%.4d/%.2d:%.2d:%.2d.%.3d%.3d", day,
      name, year, hour, minute, second, ms, us);
  throw ERROR_DATA();
}

void UNIVERSAL_TIME::Move(std::int64_t days, std::int64_t milliseconds, std::int64_t microseconds) {
  const UTC_VALUES start = Split();
  UTC_VALUES moved = start;
  moved.AddDays(days);
  moved.AddMilliseconds(milliseconds);
  moved.AddMicroseconds(microseconds);
  moved.CorrectForLeapSeconds(start);
  Format(moved);
}

UNIVERSAL_TIME& UNIVERSAL_TIME::operator+=(const DURATION& span) {
  Move(span.Days(), span.Milliseconds(), span.Microseconds());
  return *this;
}

UNIVERSAL_TIME& UNIVERSAL_TIME::operator-=(const DURATION& span) {
  Move(-std::int64_t{span.Days()}, -std::int64_t{span.Milliseconds()},
       -std::int64_t{span.Microseconds()});
  return *this;
}

UNIVERSAL_TIME& UNIVERSAL_TIME::operator++() { return *this += DURATION(0, 1000, 0); }
UNIVERSAL_TIME& UNIVERSAL_TIME::operator--() { return *this -= DURATION(0, 1000, 0); }

UNIVERSAL_TIME UNIVERSAL_TIME::operator++(int) {
  const UNIVERSAL_TIME former = *this;
  ++*this;
  return former;
}

UNIVERSAL_TIME UNIVERSAL_TIME::operator--(int) {
  const UNIVERSAL_TIME former = *this;
  --*this;
  return former;
}

DURATION operator-(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b) {
  const UTC_VALUES u = a.Split();
  const UTC_VALUES v = b.Split();
  const int days = DayOfYear(u.day, u.month, u.year) + DaysBetweenYears(v.year, u.year) -
                   DayOfYear(v.day, v.month, v.year);
  const int milliseconds = LeapSecondsBetween(u, v) * 1000 -
                           MilliOfDay(v.hour, v.minute, v.second, v.millisecond) +
                           MilliOfDay(u.hour, u.minute, u.second, u.millisecond);
  return {days, milliseconds, u.microsecond - v.microsecond};
}

bool operator==(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b) {
  return std::strcmp(a.text, b.text) == 0;
}

bool operator<(const UNIVERSAL_TIME& a, const UNIVERSAL_TIME& b) {
  return IsEarlier(a.Split(), b.Split());
}

std::ostream& operator<<(std::ostream& stream, const UNIVERSAL_TIME& time) {
  return stream << time.c_str();
}

std::istream& operator>>(std::istream& stream, UNIVERSAL_TIME& time) {
  char line[256] = {};
  (stream >> std::ws).getline(line, sizeof line);
  time = UNIVERSAL_TIME(line);
  return stream;
}

STRING ToPoolText(const UNIVERSAL_TIME& time, int digits, bool zulu) {
  constexpr int POINT_POSITION = 19;
  const UTC_VALUES v = time.Split();
  char printed[128];
  const int length =
      std::snprintf(printed, sizeof printed, "%d-%02d-%02dT%02d:%02d:%02d.%03d%03d", v.year,
                    v.month, v.day, v.hour, v.minute, v.second, v.millisecond, v.microsecond);
  const int end = digits <= 0 ? POINT_POSITION : POINT_POSITION + 1 + std::min(digits, 6);
  const STRING cut(printed, static_cast<std::size_t>(std::min(end, length)));
  return zulu ? cut + "Z" : cut;
}

}  // namespace varnoth
