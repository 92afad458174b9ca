#include "time/universal_time.hpp"

#include <chrono>
#include <limits>

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"
#include "time/calendar.hpp"

namespace varnoth::test {
namespace {

using namespace std::chrono;
using UniversalTimeTest = LoggedTest;

// The dates behind whose end a second was inserted, as the calendar has them.
constexpr sys_days INSERTED[] = {1972y / 6 / 30, 1972y / 12 / 31, 1973y / 12 / 31, 1974y / 12 / 31,
                                 1975y / 12 / 31, 1976y / 12 / 31, 1977y / 12 / 31, 1978y / 12 / 31,
                                 1979y / 12 / 31, 1981y / 6 / 30, 1982y / 6 / 30, 1983y / 6 / 30,
                                 1985y / 6 / 30, 1987y / 12 / 31, 1989y / 12 / 31, 1990y / 12 / 31,
                                 1992y / 6 / 30, 1993y / 6 / 30, 1994y / 6 / 30, 1995y / 12 / 31,
                                 1997y / 6 / 30, 1998y / 12 / 31, 2005y / 12 / 31, 2008y / 12 / 31,
                                 // The table counts these two from the end of the next day on.
                                 2012y / 7 / 1, 2015y / 7 / 1};

UNIVERSAL_TIME At(sys_seconds time) {
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  UNIVERSAL_TIME label;
  label.Format(int(date.year()), int(unsigned(date.month())), int(unsigned(date.day())),
               int(clock.hours().count()), int(clock.minutes().count()),
               int(clock.seconds().count()), 0, 0);
  return label;
}

DURATION Seconds(std::int64_t count) { return {0, 1000 * count, 0}; }

TEST(Calendar, DaysAgreeWithTheCalendarOfTheLibrary) {
  for (auto day = sys_days(1896y / 1 / 1); day < sys_days(2105y / 1 / 1); day += days(1)) {
    const year_month_day date(day);
    const int y = int(date.year());
    const auto new_year = sys_days(date.year() / 1 / 1);
    ASSERT_EQ(DayOfYear(int(unsigned(date.day())), int(unsigned(date.month())), y),
              (day - new_year).count() + 1);
    ASSERT_EQ(DaysBetweenYears(2000, y), (new_year - sys_days(2000y / 1 / 1)).count());
    ASSERT_EQ(DaysInMonth(int(unsigned(date.month())), y),
              int(unsigned((date.year() / date.month() / last).day())));
  }
  EXPECT_EQ(DayOfYear(31, 6, 2012), DayOfYear(1, 7, 2012));
  EXPECT_EQ(MilliOfDay(23, 60, 1, 5), MilliOfDay(23, 59, 1, 5));
  EXPECT_EQ(DaysInMonth(13, 2000), -1);
}

TEST(UniversalTime, DayStepsAgreeWithADayCount) {
  ResetToEmptyTable();
  for (const auto start : {sys_days(2004y / 1 / 31), sys_days(1999y / 12 / 31),
                           sys_days(2000y / 2 / 29), sys_days(1900y / 3 / 1)}) {
    for (int step = -1500; step <= 1500; ++step) {
      const UNIVERSAL_TIME moved = At(start) + DURATION(step, 0, 0);
      ASSERT_EQ(moved, At(start + days(step))) << At(start) << " and days " << step;
      ASSERT_EQ(At(start) - DURATION(-step, 0, 0), moved);
      ASSERT_EQ(moved - At(start), DURATION(step, 0, 0));
    }
  }
  EXPECT_EQ(At(sys_days(0001y / 1 / 1)) + DURATION(3652058, 0, 0), At(sys_days(9999y / 12 / 31)));
  ResetToDefaultTable();
}

TEST(UniversalTime, EveryInsertedSecondTakesPartInASpan) {
  for (const sys_days day : INSERTED) {
    const sys_seconds noon = day + 12h;
    const UNIVERSAL_TIME start = At(noon);
    const UNIVERSAL_TIME next_day = At(noon + 24h);
    EXPECT_EQ(next_day - start, Seconds(86401));
    EXPECT_EQ(start - next_day, Seconds(-86401));
    EXPECT_EQ(start + Seconds(86401), next_day);
    EXPECT_EQ(next_day - Seconds(86401), start);
    EXPECT_EQ(start + Seconds(40000), At(noon + 40000s)) << "ahead of it nothing is counted";
    EXPECT_EQ((start + Seconds(43200)).Split().second, day < sys_days(2012y / 7 / 1) ? 60 : 59);
  }
}

TEST(UniversalTime, StepsNextToAnInsertedSecond) {
  struct STEP {
    const char* start;
    int seconds;
    const char* result;
  };
  for (const auto& [start, seconds, result] : {
           STEP{"01-JAN-2000/00:00:00.000000", -1, "31-DEC-1999/23:59:59.000000"},
           STEP{"31-DEC-1998/23:59:59.000000", 1, "31-DEC-1998/23:59:60.000000"},
           STEP{"31-DEC-1998/23:59:59.000000", 2, "01-JAN-1999/00:00:00.000000"},
           STEP{"30-JUN-1997/23:58:59.250000", 61, "30-JUN-1997/23:59:60.250000"},
           STEP{"31-DEC-1998/23:59:60.000000", 0, "31-DEC-1998/23:59:60.000000"},
           // The second of 2012 has no label of its own: the one before it lasts twice as long.
           STEP{"30-JUN-2012/23:59:59.000000", 1, "30-JUN-2012/23:59:59.000000"},
           // The last minute ahead of an inserted second counts as behind it ...
           STEP{"31-DEC-1998/23:58:50.000000", 30, "31-DEC-1998/23:59:19.000000"},
           STEP{"31-DEC-1998/22:59:50.000000", 30, "31-DEC-1998/23:00:19.000000"},
           STEP{"30-JUN-1997/23:58:50.000000", 30, "30-JUN-1997/23:59:19.000000"},
           STEP{"01-JUL-1997/00:00:00.000000", -2, "30-JUN-1997/23:59:58.000000"},
           // ... and the inserted second itself as ahead of no other.
           STEP{"31-DEC-1998/23:59:60.000000", 1, "01-JAN-1999/00:00:01.000000"},
           STEP{"01-JAN-1999/00:00:00.000000", -1, "31-DEC-1998/23:59:59.000000"},
       }) {
    EXPECT_EQ(UNIVERSAL_TIME(start) + Seconds(seconds), UNIVERSAL_TIME(result)) << start;
    EXPECT_EQ(UNIVERSAL_TIME(start) - Seconds(-seconds), UNIVERSAL_TIME(result)) << start;
  }
}

TEST(UniversalTime, FractionsCarryBothWays) {
  const UNIVERSAL_TIME start("28-FEB-2003/23:59:59.999999");
  const UNIVERSAL_TIME next("01-MAR-2003/00:00:00.000000");
  EXPECT_EQ(start + DURATION(0, 0, 1), next);
  EXPECT_EQ(next - DURATION(0, 0, 1), start);
  EXPECT_EQ(next - start, DURATION(1, -86399999, -999)) << "each field keeps its sign";
  EXPECT_EQ(next + DURATION(1, -86400000, 1001) - next, DURATION(0, 1, 1));
  UNIVERSAL_TIME moving = start;
  EXPECT_EQ(moving++, start);
  EXPECT_EQ(--moving, start);
  moving += -0.00025;
  EXPECT_EQ(moving, start + DURATION(0, 0, 750));
}

TEST(UniversalTime, SecondsCountFromTheFirstDayOfWeekNumbers) {
  EXPECT_STREQ(UNIVERSAL_TIME(0.0).c_str(), "06-JAN-1980/00:00:00.000000");
  EXPECT_STREQ(UNIVERSAL_TIME(-0.0000014).c_str(), "05-JAN-1980/23:59:59.999999");
  // 8772 days, 3:58:39.25 and 13 leap seconds.
  EXPECT_EQ(UNIVERSAL_TIME(757915132.25), UNIVERSAL_TIME("2004-01-12T03:58:39.25"));
  EXPECT_EQ(UNIVERSAL_TIME("2004-01-12T03:58:39.25") - UNIVERSAL_TIME(0.0),
            DURATION(0, 757915132250, 0));
}

TEST_F(UniversalTimeTest, WhatTheTextCanNotShowIsRefusedAndTheValueStays) {
  UNIVERSAL_TIME time("31-DEC-9999/12:00:00.000000");
  const UNIVERSAL_TIME before = time;
  EXPECT_THROW(++(time += DURATION(0, 43200000, 0)), ERROR_DATA);
  EXPECT_EQ(TakeLog(), "UNIVERSAL_TIME: no text can show the time 01-JAN-10000/00:00:00.000000\n");
  EXPECT_THROW(time -= DURATION(3652425, 0, 0), ERROR_DATA);
  EXPECT_THROW(time.Format(2000, 0, 1, 0, 0, 0, 0, 0), ERROR_DATA);
  EXPECT_EQ(time, before);
  EXPECT_THROW(UNIVERSAL_TIME() + Seconds(1), ERROR_ARGUMENT);
  EXPECT_THROW(UNIVERSAL_TIME(1e15), ERROR_PARAMETER);
  EXPECT_THROW(UNIVERSAL_TIME(std::numeric_limits<double>::quiet_NaN()), ERROR_PARAMETER);
}

TEST(UniversalTime, ThePoolFormIsCutToItsDigits) {
  const UNIVERSAL_TIME time("14-JAN-2004/10:11:12.123456");
  EXPECT_STREQ(ToPoolText(time, 6, false).c_str(), "2004-01-14T10:11:12.123456");
  EXPECT_STREQ(ToPoolText(time, 3, true).c_str(), "2004-01-14T10:11:12.123Z");
  EXPECT_STREQ(ToPoolText(time, 0, true).c_str(), "2004-01-14T10:11:12Z");
  EXPECT_STREQ(ToPoolText(time, 99, false).c_str(), "2004-01-14T10:11:12.123456");
}

}  // namespace
}  // namespace varnoth::test
