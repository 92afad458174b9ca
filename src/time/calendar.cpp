#include "time/calendar.hpp"

#include <cstring>

#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr int MONTHS = 12;
constexpr const char* MONTH_NAMES[MONTHS + 1] = {"invalid month name",
                                                 "JAN",
                                                 "FEB",
                                                 "MAR",
                                                 "APR",
                                                 "MAY",
                                                 "JUN",
                                                 "JUL",
                                                 "AUG",
                                                 "SEP",
                                                 "OCT",
                                                 "NOV",
                                                 "DEC"};
// Rows: ordinary year, leap year. Entry 0 stands for every number that is no month.
constexpr int DAYS_IN_MONTH[2][MONTHS + 1] = {{-1, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
                                              {-1, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}};
constexpr int DAYS_BEFORE_MONTH[2][MONTHS + 1] = {
    {-1, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
    {-1, 0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335}};

int MonthIndex(int month) { return month >= 1 && month <= MONTHS ? month : 0; }

}  // namespace

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInYear(int year) { return IsLeapYear(year) ? 366 : 365; }

int DaysInMonth(int month, int year) {
  return DAYS_IN_MONTH[IsLeapYear(year) ? 1 : 0][MonthIndex(month)];
}

int DaysBetweenYears(int from, int to) {
  if (to < from) return -DaysBetweenYears(to, from);
  int days = 0;
  for (int year = from; year < to; ++year) days += DaysInYear(year);
  return days;
}

int DayOfYear(int day, int month, int year) {
  return DAYS_BEFORE_MONTH[IsLeapYear(year) ? 1 : 0][MonthIndex(month)] + day;
}

int MilliOfDay(int hour, int minute, int second, int ms) {
  return hour * 3600000 + second * 1000 + ms + (minute == 60 ? 3540000 : minute * 60000);
}

const char* MonthName(int month) { return MONTH_NAMES[MonthIndex(month)]; }

int MonthFromName(const char* text) {
  for (int month = 1; month <= MONTHS; ++month) {
    if (std::strcmp(text, MONTH_NAMES[month]) == 0) return month;
  }
  GlobalLog.set(EXCEPTION) << "TIME_SCANNER: can not convert >> " << text << " << to month\n";
  throw ERROR_ARGUMENT();
}

}  // namespace varnoth
