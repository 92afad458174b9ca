#include "time/universal_time.hpp"

#include <chrono>
#include <sstream>
#include <vector>

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"
#include "time/utc_scanner.hpp"

namespace varnoth::test {
namespace {

using namespace std::chrono;
using namespace std::string_literals;
using UTC = UNIVERSAL_TIME;

// Months that end in an inserted second. The labels of the last two are of 31 June: a day later.
constexpr int INSERTED[] = {197206, 197212, 197312, 197412, 197512, 197612, 197712, 197812, 197912,
                            198106, 198206, 198306, 198506, 198712, 198912, 199012, 199206, 199306,
                            199406, 199512, 199706, 199812, 200512, 200812, 201206, 201506};

/// The table goes back to the built-in rows after each test.
class UniversalTimeTest : public LoggedTest {
 protected:
  ~UniversalTimeTest() override { ResetToDefaultTable(); }
  static int Between(const char* from, const char* to) {
    return LeapSecondsBetween(UTC(from).Split(), UTC(to).Split());
  }
};

/// The time by the calendar and the month names of the standard library.
UTC At(sys_seconds time) {
  const std::time_t since_1970 = time.time_since_epoch().count();
  std::tm fields{};
  char text[32];
  std::strftime(text, sizeof text, "%a %b %d %H:%M:%S %Y", gmtime_r(&since_1970, &fields));
  return UTC(text);
}

DURATION Seconds(std::int64_t count) { return {0, 1000 * count, 0}; }

const struct {
  const char* input;
  const char* canonical;
  std::vector<std::size_t> marks;  ///< positions that settle the form
} TEXTS[] = {
    {"14-010-2004/10:11:12", "14-OCT-2004/10:11:12.000000", {2, 6, 11}},
    {"14-JAN-2004/23:59:62.1234567", "14-JAN-2004/23:59:62.123456", {2, 6, 11}},
    {"00-JAN-2004/10:11:12 . 5 trailing", "00-JAN-2004/10:11:12.500000", {2, 6, 11}},
    {"Sun Feb  1 10:11:12 2004", "01-FEB-2004/10:11:12.000000", {3}},
    {"2004-02-29/10:11:12.000001", "29-FEB-2004/10:11:12.000001", {4, 7, 10, 13, 16}},
    {"2004-01-14T10:11:12.25 Z", "14-JAN-2004/10:11:12.250000", {4, 7, 10, 13, 16}},
    {"2004-09-30T01:02:03.12", "30-SEP-2004/01:02:03.120000", {4, 7, 10, 13, 16}},
    {"01-DEC-2003/01:02:03Z", "01-DEC-2003/01:02:03.000000", {2, 6, 11}},
    {"20040114T101112", "14-JAN-2004/10:11:12.000000", {8}},
    {"14-JAN-2004 10:11:12.034", "14-JAN-2004/10:11:12.034000", {2, 6, 11}},
};

TEST_F(UniversalTimeTest, EveryFormIsReadByItsMarksAndItsOwnTextTheSame) {
  for (const auto& [input, canonical, marks] : TEXTS) {
    const UTC time(input);
    EXPECT_STREQ(time.c_str(), canonical) << input;
    EXPECT_EQ(UTC(time.c_str()), time) << input;
    EXPECT_EQ(UTC(ToPoolText(time, 6, true).c_str()), time) << input;
    for (const std::size_t mark : marks) {
      const std::string other = std::string(input).replace(mark, 1, "x");
      EXPECT_EQ(UTC_SCANNER().DetectForm(other.c_str()), 0) << other;
    }
  }
}

constexpr std::pair<const char*, const char*> FAULTS[] = {
    {"2004-1-14T10:11:12", "UTC_SCANNER: invalid or unsupported format: 2004-1-14T10:11:12"},
    {"30-FEB-2004/10:11:12", "UTC_SCANNER: Invalid date: 30.2.2004"},
    {"2003-13-01T10:11:12", "UTC_SCANNER: Invalid date: 1.13.2003"},
    {"14-JAN-2004/24:00:00", "UTC_SCANNER: invalid hour: 24"},
    {"14-JAN-2004/23:60:00", "UTC_SCANNER: invalid minute: 60"},
    {"14-JAN-2004/23:59:63", "UTC_SCANNER: invalid second: 63"},
    {"14-JAN-2004/23:59:99999999999", "UTC_SCANNER: invalid second: 2147483647"},
    {"14-JAN-2004/12:59:60.0", "UTC_SCANNER: invalid leap second: 60"},
    {"14-JAN-2004/23:58:60", "UTC_SCANNER: invalid leap second: 60"},
    {"14-JUX-2004/10:11:12", "TIME_SCANNER: can not convert >> JU << to month"},
};

/// Texts whose scan stops at a token, and where.
constexpr const char* WRONG_TOKENS[][3] = {
    {"14-JAN-2004/1:2:3.:", "separator", "GetMilliAndMicroSeconds"},
    {"14-JAN-2004/1:2:3 4", "number", "GetPoint"},
    {"14-JAN-2004/1:2:3+", "sign_plus", "GetPoint"},
    {"14-JAN-JAN /1:2:3", "month", "GetNumber"},
    {"14-JAN-2004/1Z2:3", "zulu", "GetSeparator"},
    {"14-.  -2004/1:2:3", "point", "GetMonth"},
    {"14--  -2004/1:2:3", "sign_minus", "GetMonth"},
};

TEST_F(UniversalTimeTest, AFaultyTextIsToldAndRefused) {
  for (const auto& [input, told] : FAULTS) {
    TakeLog();
    EXPECT_THROW(UTC{input}, ERROR_DATA) << input;
    EXPECT_EQ(TakeLines(),
              "EXCEP "s + told + "\nEXCEP UTC_SCANNER: Error during scan of: " + input + "\n");
  }
  for (const auto& [input, token, scan] : WRONG_TOKENS) {
    TakeLines();
    EXPECT_THROW(UTC{input}, ERROR_DATA) << input;
    EXPECT_TRUE(TakeLines().starts_with("EXCEP found token: token_"s + token +
                                        "\nEXCEP UTC_SCANNER: unexpected token in " + scan +
                                        "(): " + input + "\n"))
        << input;
  }
  EXPECT_EQ(ThrownText([] { TokenName(8); }), "can not convert unregistered tokentype to string");
  const std::string longest = "14-JAN-2004/10:11:12." + std::string(127, '0');
  EXPECT_NO_THROW(UTC(longest.c_str()));
  EXPECT_THROW(UTC((longest + "0").c_str()), ERROR_DATA);
  EXPECT_TRUE(TakeLines().starts_with("ALARM TIME_SCANNER: token of 128 characters is too long\n"));
  EXPECT_THROW(UTC("Wed Jan 14 10:11:12 10000"), ERROR_DATA);
}

TEST_F(UniversalTimeTest, NowIsThePresentTimeHereAndInUtc) {
  setenv("TZ", "TEST-05:30", 1), tzset();
  const UTC now = At(floor<seconds>(system_clock::now()));
  // No machine takes a minute for it.
  EXPECT_NEAR((UTC::NowUtc() - now).ToSeconds(), 0.0, 60.0);
  EXPECT_NEAR((UTC::Now() - now).ToSeconds(), 5.5 * 3600, 60.0);
  unsetenv("TZ"), tzset();
}

TEST_F(UniversalTimeTest, EveryInsertedSecondHasItsLabelAndTakesPartInASpan) {
  for (const int date : INSERTED) {
    const int y = date / 100, m = date % 100, d = m == 6 && y < 2012 ? 30 : 31;
    const sys_days day = sys_days(year(y) / m / 1) + days(d - 1);
    const UTC start = At(day + 12h), next_day = At(day + 36h);
    EXPECT_EQ(next_day - start, Seconds(86401)) << date;
    EXPECT_EQ(start + Seconds(86401), next_day) << date;
    EXPECT_EQ(next_day - Seconds(86401), start) << date;
    EXPECT_EQ(start + Seconds(40000), At(day + 12h + 40000s)) << "nothing ahead of " << date;
    EXPECT_EQ((start + Seconds(43200)).Second(), y < 2012 ? 60 : 59) << date;
  }
  TakeLog();
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2016/00:00:00"), -26);
  EXPECT_EQ(Between("01-JAN-2016/00:00:00", "01-JAN-2017/00:00:00"), 0);
  EXPECT_EQ(Log(), "TRACE : log : leap secs = -26\n") << "out of the table's years is no line";
}

TEST_F(UniversalTimeTest, RowsOfLeapSecondsCountStrictlyBetweenAndGrowAtTheEnd) {
  EXPECT_EQ(Between("01-JAN-1999/00:00:00", "31-DEC-1998/23:59:59"), 1);
  EXPECT_EQ(Between("31-DEC-1998/23:59:60", "01-JAN-1999/00:00:00"), 0);
  // Fractions shrink the interval, up to the inserted second itself.
  EXPECT_EQ(Between("31-DEC-1998/23:59:59.000001", "01-JAN-1999/00:00:00"), 0);
  EXPECT_EQ(Between("31-DEC-1998/23:59:58", "31-DEC-1998/23:59:60.9"), 0);
  EXPECT_EQ(Between("31-DEC-1998/23:59:58.000001", "01-JAN-1999/00:00:00.9"), -1);
  // New rows go in front of the end.
  const LEAP_SECOND_ITEM row_2016{{2016, 12, 31, 23, 59, 60}, 1};
  const LEAP_SECOND_ITEM row_1973{{1973, 6, 30, 23, 59, 60}, 1};
  AppendFromList({row_1973, row_2016, row_2016, LEAP_SECOND_ITEM()});
  EXPECT_TRUE(IsLeapSecond(row_2016) && !IsLeapSecond(row_1973));
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2018/00:00:00"), -27);
  ARRAY<LEAP_SECOND_ITEM> rows(0, 1);
  *rows.begin() = row_1973;
  ReplaceTable(rows);
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2018/00:00:00"), -1);
  *rows.begin() = row_2016;
  AppendFromArray(rows);
  EXPECT_TRUE(IsLeapSecond(row_2016) && IsLeapSecond(row_1973));
}

TEST_F(UniversalTimeTest, DayStepsAgreeWithADayCount) {
  ResetToEmptyTable();
  for (const auto start : {sys_days(2004y / 1 / 31), sys_days(2000y / 2 / 29),
                           sys_days(1999y / 12 / 31), sys_days(1900y / 3 / 1)}) {
    for (int step = -1500; step <= 1500; ++step) {
      const UTC moved = At(start) + DURATION(step, 0, 0);
      ASSERT_EQ(moved, At(start + days(step))) << At(start) << " and days " << step;
      ASSERT_EQ(At(start) - DURATION(-step, 0, 0), moved) << At(start) << " less days " << -step;
      ASSERT_EQ((moved - At(start)).Days(), step) << At(start);
    }
  }
  UTC_VALUES unread{2004, 3, -3};
  unread.AddDays(1);
  EXPECT_EQ(unread, (UTC_VALUES{2004, 2, 27}));
  EXPECT_EQ(At(sys_days(0001y / 1 / 1)) + DURATION(3652058, 0, 0), At(sys_days(9999y / 12 / 31)));
}

TEST_F(UniversalTimeTest, StepsNextToAnInsertedSecond) {
  for (const auto& [start, seconds, result] : {
           std::tuple("31-DEC-1998/23:59:59", 2, "01-JAN-1999/00:00:00"),
           std::tuple("30-JUN-1997/23:58:59.25", 61, "30-JUN-1997/23:59:60.25"),
           // The last minute before an inserted second counts as after it ...
           std::tuple("31-DEC-1998/23:58:50", 30, "31-DEC-1998/23:59:19"),
           std::tuple("30-JUN-1997/22:59:50", 30, "30-JUN-1997/23:00:19"),
           std::tuple("01-JUL-1997/00:00:00", -2, "30-JUN-1997/23:59:58"),
           // ... and the inserted second itself as before no other.
           std::tuple("31-DEC-1998/23:59:60", 1, "01-JAN-1999/00:00:01"),
           std::tuple("01-JAN-1999/00:00:00", -1, "31-DEC-1998/23:59:59"),
       }) {
    EXPECT_EQ(UTC(start) + Seconds(seconds), UTC(result)) << start;
  }
  UTC_VALUES passing{1998, 12, 31, 23, 59, 59};
  passing.AddSeconds(2, LEAP::OBSERVED);
  EXPECT_EQ(passing, (UTC_VALUES{1998, 12, 31, 23, 59, 60})) << "comes out one label earlier";
}

TEST_F(UniversalTimeTest, FractionsAndSecondsCarryBothWays) {
  const UTC start("28-FEB-2003/23:59:59.999999"), next("01-MAR-2003/00:00:00");
  EXPECT_EQ(start + DURATION(0, 0, 1), next);
  EXPECT_EQ(next - DURATION(0, 0, 1), start);
  EXPECT_EQ(next - start, DURATION(1, -86399999, -999)) << "each field keeps its sign";
  UTC moving = start;
  EXPECT_EQ(moving++, start);
  EXPECT_EQ(moving--, start + Seconds(1));
  EXPECT_EQ(moving += -0.00025, start + DURATION(0, 0, 750));
  // Seconds count from the first day of week numbers.
  EXPECT_STREQ(UTC(-0.0000014).c_str(), "05-JAN-1980/23:59:59.999999");
  // 8772 days, 3:58:39.25 and 13 leap seconds.
  EXPECT_EQ(UTC(757915132.25), UTC("2004-01-12T03:58:39.25"));
}

TEST_F(UniversalTimeTest, WhatTheTextCanNotShowIsToldAndTheValueStays) {
  UTC time("31-DEC-9999/12:00:00");
  const UTC before = time;
  EXPECT_THROW(time += Seconds(43200), ERROR_DATA);
  EXPECT_THROW(time -= DURATION(3660001, 0, 0), ERROR_DATA);
  EXPECT_EQ(Log(),
            "ALARM : log : UNIVERSAL_TIME: no text can show the time 01-JAN-10000/00:00:00.000000\n"
            "ALARM : log : UNIVERSAL_TIME: can not step -3660001 days from 31.12.9999\n");
  for (const UTC_VALUES& wide :
       {UTC_VALUES{0, 13}, UTC_VALUES{0, 0}, UTC_VALUES{0, 1, 100}, UTC_VALUES{0, 1, -1},
        UTC_VALUES{0, 1, 1, 100}, UTC_VALUES{0, 1, 1, 0, 100}, UTC_VALUES{0, 1, 1, 0, 0, 100},
        UTC_VALUES{0, 1, 1, 0, 0, 0, 1000}, UTC_VALUES{0, 1, 1, 0, 0, 0, 0, 1000}}) {
    EXPECT_THROW(time.Format(wide), ERROR_DATA) << Log();
  }
  EXPECT_NE(Log().find("time 01-invalid month name-0000/00:00:00.000000\n"), std::string::npos);
  EXPECT_EQ(time, before);
  EXPECT_THROW(UTC() + Seconds(1), ERROR_ARGUMENT);
  EXPECT_THROW(UTC(1e15), ERROR_PARAMETER);
}

TEST_F(UniversalTimeTest, FieldsTextsAndOrder) {
  UTC time(0.0), later;
  time.SetDay(14), time.SetMonth(5), time.SetYear(2004), time.SetHour(9), time.SetMinute(8);
  time.SetSecond(7), time.SetMillisecond(34), time.SetMicrosecond(56);
  EXPECT_EQ(time.Split(), (UTC_VALUES{2004, 5, 14, 9, 8, 7, 34, 56}));
  time.SetFraction(123456);
  EXPECT_STREQ(ToPoolText(time, 99, false).c_str(), "2004-05-14T09:08:07.123456");
  EXPECT_STREQ(ToPoolText(time, 3, true).c_str(), "2004-05-14T09:08:07.123Z");
  EXPECT_STREQ(ToPoolText(time, 0, true).c_str(), "2004-05-14T09:08:07Z");
  std::istringstream lines(" \n 14-MAY-2004 09:08:07.123457\n");
  lines >> later;
  EXPECT_EQ((std::ostringstream() << later).str(), "14-MAY-2004/09:08:07.123457");
  EXPECT_TRUE(UTC().IsEmpty() && !time.IsEmpty());
  EXPECT_TRUE(time < later && time <= later && later >= time && !(later < time || time < time));
}

}  // namespace
}  // namespace varnoth::test
