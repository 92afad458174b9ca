#pragma once

namespace varnoth {

/// The calendar (Gregorian, years 0 to 9999, also before its introduction). Months count from 1,
/// days of a month and of a year too.

/// Divisible by 4 and not by 100, or divisible by 400.
bool IsLeapYear(int year);
/// 365 or 366.
int DaysInYear(int year);
/// 28 to 31, or -1 for a month outside 1 to 12.
int DaysInMonth(int month, int year);
/// Days from 1 January of `from` to 1 January of `to`; negative when `to` is earlier.
int DaysBetweenYears(int from, int to);
/// Day of the year; 1 January is 1. The day may lie outside its month: 31 June is 1 July.
int DayOfYear(int day, int month, int year);
/// Milliseconds since midnight. A minute of 60 counts as 59. The fields have two and three digits.
int MilliOfDay(int hour, int minute, int second, int ms);

/// "JAN" to "DEC", or "invalid month name" for a month outside 1 to 12.
const char* MonthName(int month);
/// 1 to 12 for exactly "JAN" to "DEC". Any other text is logged and throws ERROR_ARGUMENT.
int MonthFromName(const char* text);

}  // namespace varnoth
