#include "time/universal_time.hpp"

#include <chrono>
#include <limits>
#include <sstream>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "support/log_capture.hpp"
#include "time/calendar.hpp"

namespace varnoth::test {
namespace {

using namespace std::chrono;
// The labels of all inserted seconds; the last two stand on a day that is none, so that they count
// from the end of the next day on.
constexpr int INSERTED[] = {19720630, 19721231, 19731231, 19741231, 19751231, 19761231, 19771231,
                            19781231, 19791231, 19810630, 19820630, 19830630, 19850630, 19871231,
                            19891231, 19901231, 19920630, 19930630, 19940630, 19951231, 19970630,
                            19981231, 20051231, 20081231, 20120631, 20150631};

constexpr const char* MONTHS[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                  "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

/// The table goes back to the built-in rows behind each test.
class UniversalTimeTest : public LoggedTest {
 protected:
  ~UniversalTimeTest() override { ResetToDefaultTable(); }
  static int Between(const char* from, const char* to) {
    return LeapSecondsBetween(UNIVERSAL_TIME(from).Split(), UNIVERSAL_TIME(to).Split());
  }
};
using LeapSecondsTest = UniversalTimeTest;

UNIVERSAL_TIME At(sys_seconds time) {
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  return UNIVERSAL_TIME(UTC_VALUES{int(date.year()), int(unsigned(date.month())),
                                   int(unsigned(date.day())), int(clock.hours().count()),
                                   int(clock.minutes().count()), int(clock.seconds().count())});
}

DURATION Seconds(std::int64_t count) { return {0, 1000 * count, 0}; }

TEST(Calendar, DaysAgreeWithTheCalendarOfTheLibrary) {
  for (auto day = sys_days(1896y / 1 / 1); day < sys_days(2105y / 1 / 1); day += days(1)) {
    const year_month_day date(day);
    const int y = int(date.year()), m = int(unsigned(date.month()));
    const auto new_year = sys_days(date.year() / 1 / 1);
    ASSERT_EQ(DayOfYear(int(unsigned(date.day())), m, y), (day - new_year).count() + 1) << y << m;
    ASSERT_EQ(DaysBetweenYears(2000, y), (new_year - sys_days(2000y / 1 / 1)).count());
    ASSERT_EQ(DaysInMonth(m, y), int(unsigned((date.year() / date.month() / last).day())))
        << y << m;
  }
  EXPECT_EQ(DayOfYear(31, 6, 2012), DayOfYear(1, 7, 2012));
  EXPECT_EQ(MilliOfDay(23, 60, 1, 5), MilliOfDay(23, 59, 1, 5));
  for (const int none : {0, 13}) {
    EXPECT_EQ(DaysInMonth(none, 2000), -1);
    EXPECT_STREQ(MonthName(none), "invalid month name");
  }
}

TEST(UniversalTime, EveryMonthHasItsName) {
  for (int month = 1; month <= 12; ++month) {
    const std::string text = std::string("14-") + MONTHS[month - 1] + "-2004/00:00:00.000000";
    const UNIVERSAL_TIME time = At(sys_days(2004y / month / 14));
    EXPECT_STREQ(time.c_str(), text.c_str());
    EXPECT_EQ(UNIVERSAL_TIME(text.c_str()), time);
    EXPECT_EQ(time.Month(), month);
  }
}

TEST(UniversalTime, NowIsThePresentTimeHereAndInUtc) {
  setenv("TZ", "TEST-05:30", 1);
  const auto before = floor<seconds>(system_clock::now());
  const UNIVERSAL_TIME here = UNIVERSAL_TIME::Now(), utc = UNIVERSAL_TIME::NowUtc();
  const auto after = floor<seconds>(system_clock::now());
  unsetenv("TZ");
  EXPECT_TRUE(At(before) <= utc && utc <= At(after)) << utc;
  EXPECT_TRUE(At(before + 330min) <= here && here <= At(after + 330min)) << here;
}

TEST_F(LeapSecondsTest, EveryLabelOfTheTableIsOneAndNoOther) {
  for (const int date : INSERTED) {
    const UTC_VALUES label{date / 10000, date / 100 % 100, date % 100, 23, 59, 60};
    EXPECT_TRUE(IsLeapSecond(label)) << date;
    EXPECT_FALSE(IsLeapSecond({label.year, label.month, 29, 23, 59, 60})) << date;
  }
  EXPECT_FALSE(IsLeapSecond({2008, 12, 31, 23, 59, 60, 0, 1}));
  TakeLog();
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2016/00:00:00"), -26);
  EXPECT_EQ(Between("01-JAN-1970/00:00:00", "31-DEC-1971/00:00:00"), 0);
  EXPECT_EQ(Between("01-JAN-2016/00:00:00", "01-JAN-2017/00:00:00"), 0);
  EXPECT_EQ(Log(), "TRACE : log : leap secs = -26\n") << "out of the table's years is no line";
}

TEST_F(LeapSecondsTest, CountsRowsStrictlyBetween) {
  EXPECT_EQ(Between("01-JAN-1999/00:00:00", "01-JAN-1999/00:00:00"), 0);
  EXPECT_EQ(Between("01-JAN-1999/00:00:00", "31-DEC-1998/23:59:59"), 1);
  EXPECT_EQ(Between("31-DEC-1998/23:59:59", "01-JAN-1999/00:00:00"), -1);
  EXPECT_EQ(Between("31-DEC-1998/23:59:60", "01-JAN-1999/00:00:00"), 0);
  EXPECT_EQ(Between("30-JUN-2012/12:00:00", "01-JUL-2012/12:00:00"), 0);
  EXPECT_EQ(Between("30-JUN-2012/12:00:00", "02-JUL-2012/00:00:01"), -1);
  // Fractions shrink the interval, up to the inserted second itself.
  EXPECT_EQ(Between("31-DEC-1998/23:59:59.000001", "01-JAN-1999/00:00:00"), 0);
  EXPECT_EQ(Between("31-DEC-1998/23:59:58", "31-DEC-1998/23:59:60.9"), 0);
  EXPECT_EQ(Between("31-DEC-1998/23:59:58.000001", "01-JAN-1999/00:00:00.9"), -1);
}

TEST_F(LeapSecondsTest, NewRowsGoInFrontOfTheEnd) {
  const LEAP_SECOND_ITEM row_2016{{2016, 12, 31, 23, 59, 60, 0, 0}, 1};
  const LEAP_SECOND_ITEM row_1973{{1973, 6, 30, 23, 59, 60, 0, 0}, 1};
  AppendFromList({row_1973, row_2016, row_2016, LEAP_SECOND_ITEM()});
  EXPECT_TRUE(IsLeapSecond(row_2016));
  EXPECT_FALSE(IsLeapSecond(row_1973));
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2018/00:00:00"), -27);
  ResetToEmptyTable();
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2018/00:00:00"), 0);
  ARRAY<LEAP_SECOND_ITEM> rows(0, 1);
  rows.GetBase()[0] = row_1973;
  ReplaceTable(rows);
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2018/00:00:00"), -1);
}

TEST_F(UniversalTimeTest, DayStepsAgreeWithADayCount) {
  ResetToEmptyTable();
  for (const auto start : {sys_days(2004y / 1 / 31), sys_days(1999y / 12 / 31),
                           sys_days(2000y / 2 / 29), sys_days(1900y / 3 / 1)}) {
    for (int step = -1500; step <= 1500; ++step) {
      const UNIVERSAL_TIME moved = At(start) + DURATION(step, 0, 0);
      ASSERT_EQ(moved, At(start + days(step))) << At(start) << " and days " << step;
      ASSERT_EQ(At(start) - DURATION(-step, 0, 0), moved) << At(start) << " less days " << -step;
      ASSERT_EQ((moved - At(start)).Days(), step) << At(start);
    }
  }
  EXPECT_EQ(At(sys_days(0001y / 1 / 1)) + DURATION(3652058, 0, 0), At(sys_days(9999y / 12 / 31)));
}

TEST(UniversalTime, EveryInsertedSecondTakesPartInASpan) {
  for (const int date : INSERTED) {
    const bool has_label = date < 20120000;
    const sys_days day = sys_days(year(date / 10000) / (date / 100 % 100) / 1) +
                         days(date % 100 - 1);  // the 31st of June is the first of July
    const UNIVERSAL_TIME start = At(day + 12h), next_day = At(day + 36h);
    EXPECT_EQ(next_day - start, Seconds(86401)) << date;
    EXPECT_EQ(start - next_day, Seconds(-86401)) << date;
    EXPECT_EQ(start + Seconds(86401), next_day) << date;
    EXPECT_EQ(next_day - Seconds(86401), start) << date;
    EXPECT_EQ(start + Seconds(40000), At(day + 12h + 40000s)) << "nothing ahead of " << date;
    EXPECT_EQ((start + Seconds(43200)).Second(), has_label ? 60 : 59) << date;
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
  UTC_VALUES passing{1998, 12, 31, 23, 59, 59};
  passing.AddSeconds(2, LEAP::OBSERVED);
  EXPECT_EQ(passing, (UTC_VALUES{1998, 12, 31, 23, 59, 60})) << "comes out one label earlier";
}

TEST(UniversalTime, FractionsAndSecondsCarryBothWays) {
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
  // Seconds count from the first day of week numbers.
  EXPECT_STREQ(UNIVERSAL_TIME(0.0).c_str(), "06-JAN-1980/00:00:00.000000");
  EXPECT_STREQ(UNIVERSAL_TIME(-0.0000014).c_str(), "05-JAN-1980/23:59:59.999999");
  // 8772 days, 3:58:39.25 and 13 leap seconds.
  EXPECT_EQ(UNIVERSAL_TIME(757915132.25), UNIVERSAL_TIME("2004-01-12T03:58:39.25"));
  EXPECT_EQ(UNIVERSAL_TIME("2004-01-12T03:58:39.25") - UNIVERSAL_TIME(0.0),
            DURATION(0, 757915132250, 0));
}

TEST_F(UniversalTimeTest, WhatTheTextCanNotShowIsToldAndTheValueStays) {
  UNIVERSAL_TIME time("31-DEC-9999/12:00:00.000000");
  const UNIVERSAL_TIME before = time;
  EXPECT_THROW(++(time += DURATION(0, 43200000, 0)), ERROR_DATA);
  EXPECT_THROW(time -= DURATION(3660001, 0, 0), ERROR_DATA);
  EXPECT_EQ(Log(),
            "ALARM : log : UNIVERSAL_TIME: no text can show the time 01-JAN-10000/00:00:00.000000\n"
            "ALARM : log : UNIVERSAL_TIME: can not step -3660001 days from 31.12.9999\n");
  EXPECT_THROW(time -= DURATION(3652425, 0, 0), ERROR_DATA);
  for (const UTC_VALUES& wide :
       {UTC_VALUES{10000}, UTC_VALUES{0, 13}, UTC_VALUES{0, 0}, UTC_VALUES{0, 1, 100},
        UTC_VALUES{0, 1, -1}, UTC_VALUES{0, 1, 1, 100}, UTC_VALUES{0, 1, 1, 0, 100},
        UTC_VALUES{0, 1, 1, 0, 0, 100}, UTC_VALUES{0, 1, 1, 0, 0, 0, 1000},
        UTC_VALUES{0, 1, 1, 0, 0, 0, 0, 1000}}) {
    EXPECT_THROW(time.Format(wide), ERROR_DATA) << Log();
  }
  EXPECT_EQ(time, before);
  EXPECT_THROW(UNIVERSAL_TIME() + Seconds(1), ERROR_ARGUMENT);
  EXPECT_THROW(UNIVERSAL_TIME(1e15), ERROR_PARAMETER);
  EXPECT_THROW(UNIVERSAL_TIME(std::numeric_limits<double>::quiet_NaN()), ERROR_PARAMETER);
}

TEST_F(UniversalTimeTest, FieldsTextsAndOrder) {
  UNIVERSAL_TIME time(0.0);
  time.SetDay(14), time.SetMonth(5), time.SetYear(2004), time.SetHour(10), time.SetMinute(11);
  time.SetSecond(12), time.SetMillisecond(34), time.SetMicrosecond(56);
  EXPECT_EQ(time.Split(), (UTC_VALUES{2004, 5, 14, 10, 11, 12, 34, 56}));
  EXPECT_EQ(time.Fraction(), 34056);
  time.SetFraction(123456);
  EXPECT_STREQ(time.c_str(), "14-MAY-2004/10:11:12.123456");
  EXPECT_STREQ(ToPoolText(time, 6, false).c_str(), "2004-05-14T10:11:12.123456");
  EXPECT_STREQ(ToPoolText(time, 3, true).c_str(), "2004-05-14T10:11:12.123Z");
  EXPECT_STREQ(ToPoolText(time, 0, true).c_str(), "2004-05-14T10:11:12Z");
  EXPECT_STREQ(ToPoolText(time, 99, false).c_str(), "2004-05-14T10:11:12.123456");
  std::istringstream lines(" \n 14-MAY-2004 10:11:12.123457\n");
  UNIVERSAL_TIME later;
  lines >> later;
  EXPECT_TRUE(time < later && later > time && time <= later && later >= time && time >= time);
  EXPECT_FALSE(later < time || time > later || later <= time || time >= later || time < time);
  EXPECT_THROW(lines >> later, ERROR_DATA);
  TakeLog();
  GlobalLog.set(INFO) << time << "\n";
  EXPECT_EQ(Log(), "INFO  : log : 14-MAY-2004/10:11:12.123456\n");
  EXPECT_TRUE(UNIVERSAL_TIME().IsEmpty() && !time.IsEmpty());
}

}  // namespace
}  // namespace varnoth::test
