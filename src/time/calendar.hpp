#pragma once

namespace varnoth {

/// The Gregorian calendar for the years 0 to 9999, also before its introduction. Months, days of a
/// month and days of a year count from 1.
///
///     const int day = DayOfYear(1, 3, 2004);  // 61
///     const int length = DaysBetweenYears(2004, 2005);  // 366

/// Whether the year is divisible by 4 and not by 100, or divisible by 400.
bool IsLeapYear(int year);
/// 365 or 366.
int DaysInYear(int year);
/// 28 to 31, or -1 for a month outside 1 to 12.
int DaysInMonth(int month, int year);
/// Days from 1 January of `from` to 1 January of `to`; negative if `to` is earlier. The cost is
/// proportional to the number of years.
int DaysBetweenYears(int from, int to);
/// Day of the year; 1 January is 1. The day may lie outside its month: 31 June counts as 1 July. A
/// month outside 1 to 12 gives `day` - 1.
int DayOfYear(int day, int month, int year);
/// Milliseconds since midnight of fields with at most two digits (`ms`: three). A minute of 60
/// counts as 59.
int MilliOfDay(int hour, int minute, int second, int ms);

/// "JAN" to "DEC", or "invalid month name" for a month outside 1 to 12.
const char* MonthName(int month);
/// 1 to 12 for exactly "JAN" to "DEC". Any other text throws ERROR_ARGUMENT, after a line at
/// EXCEPTION.
int MonthFromName(const char* text);

}  // namespace varnoth
