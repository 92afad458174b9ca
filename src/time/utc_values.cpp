#include "time/utc_values.hpp"

#include <tuple>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "time/calendar.hpp"
#include "time/leap_seconds.hpp"

namespace varnoth {

namespace {

constexpr std::int64_t MAX_STEP_DAYS = 3660000;  // more than 10000 years
constexpr int DAYS_IN_ANY_MONTH = 28;

auto OrderOf(const UTC_VALUES& t) {
  return std::make_tuple(t.year, DayOfYear(t.day, t.month, t.year),
                         MilliOfDay(t.hour, t.minute, t.second, t.millisecond), t.microsecond);
}

// Whether a time is so near the turn of a half year that a leap second may lie on either side.
bool IsNearLeapSecond(const UTC_VALUES& t) {
  return (t.month == 6 || t.month == 7 || t.month < 2 || t.month >= 12) &&
         (t.day < 2 || t.day > 29) && (t.hour == 23 || t.hour == 0) &&
         (t.minute == 59 || t.minute == 0);
}

}  // namespace

bool IsEarlier(const UTC_VALUES& a, const UTC_VALUES& b) { return OrderOf(a) < OrderOf(b); }

void UTC_VALUES::NextMonth() {
  if (++month > 12) {
    month = 1;
    ++year;
  }
}

void UTC_VALUES::PreviousMonth() {
  if (--month < 1) {
    month = 12;
    --year;
  }
}

void UTC_VALUES::AddDays(std::int64_t count) {
  if (count == 0) return;
  if (count > MAX_STEP_DAYS || count < -MAX_STEP_DAYS || month < 1 || month > 12) {
    GlobalLog.set(ALARM) << "UNIVERSAL_TIME: can not step " << count << " days from " << day << "."
                         << month << "." << year << "\n";
    throw ERROR_DATA();
  }
  auto step = static_cast<int>(count);
  // Walk whole months from a day that every month has.
  if (step > 0) {
    for (; day > DAYS_IN_ANY_MONTH; --day) ++step;
  }
  for (; step > DaysInMonth(month, year); NextMonth()) step -= DaysInMonth(month, year);
  while (step < 1) {
    PreviousMonth();
    step += DaysInMonth(month, year);
  }
  day += step;
  for (; day > DaysInMonth(month, year); NextMonth()) day -= DaysInMonth(month, year);
  while (day < 1) {
    PreviousMonth();
    day += DaysInMonth(month, year);
  }
}

void UTC_VALUES::AddHours(std::int64_t count) {
  hour += static_cast<int>(count);
  for (; hour >= 24; hour -= 24) AddDays(1);
  for (; hour < 0; hour += 24) AddDays(-1);
}

void UTC_VALUES::AddMinutes(std::int64_t count) {
  minute += static_cast<int>(count);
  for (; minute >= 60; minute -= 60) AddHours(1);
  for (; minute < 0; minute += 60) AddHours(-1);
}

// Whether the minute of this time has a second 60.
bool UTC_VALUES::EndsInLeapSecond() const {
  return IsLeapSecond({year, month, day, hour, minute, 60, 0, 0});
}

// Whether a leap second precedes this time, which is in the first second of a day.
bool UTC_VALUES::FollowsLeapSecond() const {
  UTC_VALUES eve{year, month, day, 0, 0, 0, 0, 0};
  eve.AddSeconds(-1, LEAP::IGNORED);
  return eve.EndsInLeapSecond();
}

void UTC_VALUES::AddSeconds(std::int64_t count, LEAP leap) {
  if (count == 0) return;
  const bool observed = leap == LEAP::OBSERVED;
  const std::int64_t minutes = count / 60;
  const std::int64_t hours = minutes / 60;
  const std::int64_t days = hours / 24;
  if (hours != 0) {
    AddDays(days);
    AddHours(hours - 24 * days);
  }
  if (minutes != 0) AddMinutes(minutes - 60 * hours);
  second += static_cast<int>(count - 60 * minutes);

  if (observed && second == 60 && IsLeapSecond(*this)) return;
  if (observed && second > 60 && EndsInLeapSecond()) --second;
  for (; second >= 60; second -= 60) AddMinutes(1);

  const bool starts_half_year =
      second == 0 && minute == 0 && hour == 0 && day == 1 && (month == 1 || month == 7);
  if (observed && count >= 1 && starts_half_year && FollowsLeapSecond()) {
    AddSeconds(-1, LEAP::IGNORED);
    second = 60;
    return;
  }
  if (second >= 0) return;
  for (; second < 0; second += 60) AddMinutes(-1);
  if (observed && EndsInLeapSecond()) ++second;
}

void UTC_VALUES::AddMilliseconds(std::int64_t count) {
  if (count == 0) return;
  AddSeconds(count / 1000, LEAP::IGNORED);
  millisecond += static_cast<int>(count % 1000);
  for (; millisecond > 999; millisecond -= 1000) AddSeconds(1, LEAP::IGNORED);
  for (; millisecond < 0; millisecond += 1000) AddSeconds(-1, LEAP::IGNORED);
}

void UTC_VALUES::AddMicroseconds(std::int64_t count) {
  if (count == 0) return;
  AddMilliseconds(count / 1000);
  microsecond += static_cast<int>(count % 1000);
  for (; microsecond > 999; microsecond -= 1000) AddMilliseconds(1);
  for (; microsecond < 0; microsecond += 1000) AddMilliseconds(-1);
}

void UTC_VALUES::CorrectForLeapSeconds(const UTC_VALUES& start) {
  // Near a leap second the label can't tell on which side the time is. Then count the leap seconds
  // up to the same time of the next day, and take the day back together with them.
  int day_back = 0;
  if (IsNearLeapSecond(*this)) {
    AddDays(1);
    day_back = -86400;
  }
  AddSeconds(LeapSecondsBetween(start, *this) + day_back, LEAP::OBSERVED);
}

}  // namespace varnoth
