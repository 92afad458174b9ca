#include "tools/import/moment.hpp"

#include <charconv>
#include <chrono>
#include <cstdio>

#include "time/calendar.hpp"
#include "time/leap_seconds.hpp"

namespace varnoth::tools {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

year_month_day DateOf(const MOMENT& moment) {
  return year_month_day(sys_days(std::chrono::days(moment.day)));
}

struct CLOCK {
  int hour = 0;
  int minute = 0;
  int second = 0;
  int microsecond = 0;
};

CLOCK ClockOf(const MOMENT& moment) {
  const std::int64_t seconds = moment.microseconds / MICROSECONDS_OF_SECOND;
  CLOCK clock;
  clock.microsecond = static_cast<int>(moment.microseconds % MICROSECONDS_OF_SECOND);
  clock.minute = static_cast<int>(std::min<std::int64_t>(seconds / 60, 24 * 60 - 1));
  clock.second = static_cast<int>(seconds) - clock.minute * 60;  // 60 within a leap second
  clock.hour = clock.minute / 60;
  clock.minute %= 60;
  return clock;
}

UTC_VALUES ToUtc(const MOMENT& moment) {
  const year_month_day date = DateOf(moment);
  const CLOCK clock = ClockOf(moment);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          clock.hour,
          clock.minute,
          clock.second,
          clock.microsecond / 1000,
          clock.microsecond % 1000};
}

/// Takes the two or four digits of a field, and the character behind it if there is to be one.
bool TakeField(std::string_view& text, std::size_t digits, std::string_view behind, int& value) {
  if (text.size() < digits + (behind.empty() ? 0 : 1)) return false;
  value = 0;
  for (const char digit : text.substr(0, digits)) {
    if (digit < '0' || digit > '9') return false;
    value = value * 10 + (digit - '0');
  }
  if (!behind.empty() && behind.find(text[digits]) == behind.npos) return false;
  text.remove_prefix(digits + (behind.empty() ? 0 : 1));
  return true;
}

}  // namespace

std::optional<std::int64_t> DayOf(int year, int month, int day) {
  if (year < 1970 || year > 2099 || month < 1 || month > 12 || day < 1 ||
      day > DaysInMonth(month, year)) {
    return std::nullopt;
  }
  const year_month_day date{std::chrono::year(year), std::chrono::month(unsigned(month)),
                            std::chrono::day(unsigned(day))};
  return sys_days(date).time_since_epoch().count();
}

std::optional<MOMENT> MomentFromText(std::string_view text) {
  int year = 0;
  int month = 0;
  int day = 0;
  CLOCK clock;
  if (!TakeField(text, 4, "-", year) || !TakeField(text, 2, "-", month) ||
      !TakeField(text, 2, "T ", day) || !TakeField(text, 2, ":", clock.hour) ||
      !TakeField(text, 2, ":", clock.minute) || !TakeField(text, 2, "", clock.second)) {
    return std::nullopt;
  }
  if (text.ends_with('Z')) text.remove_suffix(1);
  std::int64_t fraction = 0;
  if (!text.empty()) {
    if (text[0] != '.' || text.find_first_not_of("0123456789", 1) != text.npos) return std::nullopt;
    std::string digits(text.substr(1, 7));
    digits.resize(7, '0');
    std::from_chars(digits.data(), digits.data() + digits.size(), fraction);
    fraction = (fraction + 5) / 10;
  }
  const std::optional<std::int64_t> number = DayOf(year, month, day);
  const bool is_leap = clock.hour == 23 && clock.minute == 59 && clock.second == 60;
  if (!number || clock.hour > 23 || clock.minute > 59 || (clock.second > 59 && !is_leap)) {
    return std::nullopt;
  }
  const std::int64_t seconds = (clock.hour * 60 + clock.minute) * 60 + clock.second;
  MOMENT moment{*number, seconds * MICROSECONDS_OF_SECOND + fraction};
  if (!is_leap) moment = Later(moment, 0);  // the rounding may have reached midnight
  return moment;
}

MOMENT Later(const MOMENT& moment, std::int64_t microseconds) {
  const std::int64_t all = moment.microseconds + microseconds;
  const std::int64_t left = (all % MICROSECONDS_OF_DAY + MICROSECONDS_OF_DAY) % MICROSECONDS_OF_DAY;
  return {moment.day + (all - left) / MICROSECONDS_OF_DAY, left};
}

std::int64_t MicrosecondsBetween(const MOMENT& from, const MOMENT& to) {
  std::int64_t passed =
      (to.day - from.day) * MICROSECONDS_OF_DAY + to.microseconds - from.microseconds;
  // Moments of one day have none between them, and the table is slow for thousands of epochs.
  if (from.day != to.day) {
    passed -= MICROSECONDS_OF_SECOND * LeapSecondsBetween(ToUtc(from), ToUtc(to));
  }
  return passed;
}

std::int64_t TaiMinusUtc(const MOMENT& moment) {
  constexpr int AT_START = 10;  // of 1972
  constexpr std::int64_t DAY_OF_2017 = 17167;
  return AT_START - LeapSecondsBetween({1972, 1, 1, 0, 0, 0, 0, 0}, ToUtc(moment)) +
         (moment.day >= DAY_OF_2017 ? 1 : 0);
}

std::string PoolTime(const MOMENT& moment) {
  const UTC_VALUES utc = ToUtc(moment);
  char text[64];
  std::snprintf(text, sizeof text, "%02d-%s-%04d/%02d:%02d:%02d.%03d%03d", utc.day,
                MonthName(utc.month), utc.year, utc.hour, utc.minute, utc.second, utc.millisecond,
                utc.microsecond);
  return text;
}

std::string IsoTime(const MOMENT& moment) {
  const UTC_VALUES utc = ToUtc(moment);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03d%03d", utc.year, utc.month,
                utc.day, utc.hour, utc.minute, utc.second, utc.millisecond, utc.microsecond);
  return text;
}

}  // namespace varnoth::tools
