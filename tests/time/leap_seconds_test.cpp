#include "time/leap_seconds.hpp"

#include "support/log_capture.hpp"
#include "time/universal_time.hpp"

namespace varnoth::test {
namespace {

/// The table goes back to the built-in rows behind each test.
class LeapSecondsTest : public LoggedTest {
 protected:
  ~LeapSecondsTest() override { ResetToDefaultTable(); }
  static int Between(const char* from, const char* to) {
    return LeapSecondsBetween(UNIVERSAL_TIME(from).Split(), UNIVERSAL_TIME(to).Split());
  }
};

TEST_F(LeapSecondsTest, OnlyAListedLabelIsOne) {
  EXPECT_TRUE(IsLeapSecond({2008, 12, 31, 23, 59, 60, 0, 0}));
  EXPECT_FALSE(IsLeapSecond({2008, 12, 31, 23, 59, 60, 0, 1}));
  EXPECT_FALSE(IsLeapSecond({2012, 6, 30, 23, 59, 60, 0, 0}));
}

TEST_F(LeapSecondsTest, CountsRowsStrictlyBetween) {
  EXPECT_EQ(Between("01-JAN-1999/00:00:00", "01-JAN-1999/00:00:00"), 0);
  EXPECT_EQ(Between("31-DEC-1998/23:59:59", "01-JAN-1999/00:00:00"), -1);
  EXPECT_EQ(Between("01-JAN-1999/00:00:00", "31-DEC-1998/23:59:59"), 1);
  EXPECT_EQ(Between("31-DEC-1998/23:59:60", "01-JAN-1999/00:00:00"), 0);
  EXPECT_EQ(Between("01-JAN-1972/00:00:00", "01-JAN-2016/00:00:00"), -26);
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
}

}  // namespace
}  // namespace varnoth::test
