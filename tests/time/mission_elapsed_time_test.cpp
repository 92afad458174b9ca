#include "time/mission_elapsed_time.hpp"

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

std::int64_t Total(const DURATION& span) {
  return (span.Days() * 86400000LL + span.Milliseconds()) * 1000 + span.Microseconds();
}

using MissionElapsedTimeTest = LoggedTest;

TEST(MissionElapsedTime, SumsAndDifferencesAgreeWithACount) {
  const MISSION_ELAPSED_TIME start("+0012/23:59:59.999999");
  for (const std::int64_t us : {0LL, 1LL, 999999LL, 1000000LL, 86400000001LL, 5000000000000LL, -1LL,
                                -1000000LL, -86400000000LL, -1123199999999LL}) {
    const MISSION_ELAPSED_TIME moved = start + DURATION(0, 0, us);
    EXPECT_EQ(Total(moved - start), us);
    EXPECT_EQ(Total(start - moved), -us);
  }
  EXPECT_EQ(start + 0.0000011, start + DURATION(0, 0, 1));
  EXPECT_STREQ((start + -0.5).c_str(), "+0012/23:59:59.499999");
  EXPECT_THROW(start + 1e300, ERROR_PARAMETER);
}

TEST(MissionElapsedTime, ANegativeValueIsASpanToo) {
  EXPECT_EQ(MISSION_ELAPSED_TIME("-0001/02:00:00.000001") - MISSION_ELAPSED_TIME("+1/0:0:0.5"),
            DURATION(-2, -7200500, -1));
}

// A step of less than its next unit moves a negative value as it should, but a carry moves the next
// field away from zero, and a step of whole units is counted three times over.
TEST(MissionElapsedTime, CarriesOfANegativeValueGoByTheSign) {
  const MISSION_ELAPSED_TIME time("-0001/00:00:05.300000");
  EXPECT_STREQ((time + DURATION(0, 200, 0)).c_str(), "-0001/00:00:05.100000");
  EXPECT_STREQ((time + DURATION(0, 400, 0)).c_str(), "-0001/00:00:06.900000");
  EXPECT_STREQ((time + DURATION(0, 2000, 0)).c_str(), "-0001/00:00:11.300000");
  EXPECT_STREQ((time + DURATION(1, 0, 0)).c_str(), "-0000/00:00:05.300000");
  EXPECT_STREQ((time + DURATION(-1, 0, 0)).c_str(), "-0002/00:00:05.300000");
}

TEST_F(MissionElapsedTimeTest, WhatTheTextCanNotShowIsRefused) {
  MISSION_ELAPSED_TIME time("+9999/23:59:59.999999");
  const MISSION_ELAPSED_TIME before = time;
  EXPECT_EQ(MISSION_ELAPSED_TIME("9998/23:59:59.999999") + 86400.0, time);
  EXPECT_EQ(ThrownText([&] { time += DURATION(0, 0, 1); }), "can not represent MET value");
  EXPECT_EQ(TakeLog(), "MET_VALUES: exceeding representable range (days=10000)\n");
  EXPECT_THROW(time += DURATION(-10000, 0, 0), ERROR_DATA);
  EXPECT_EQ(time, before);
  EXPECT_THROW(MISSION_ELAPSED_TIME("10000/0:0:0"), ERROR_DATA);
  TakeLog();
  EXPECT_STREQ(MISSION_ELAPSED_TIME("-3/4:x").c_str(), "-0003/04:00:00.000000");
  EXPECT_EQ(TakeLog(), "MET_SCANNER: TIME: scanner: unhandled character\n");
  EXPECT_THROW(MISSION_ELAPSED_TIME() + 1.0, ERROR_ARGUMENT);
}

TEST(MissionElapsedTime, TheOrderIsBlindToMicroseconds) {
  const auto less = [](const char* a, const char* b) {
    return MISSION_ELAPSED_TIME(a) < MISSION_ELAPSED_TIME(b);
  };
  EXPECT_TRUE(less("-0/0:0:1", "+0/0:0:0"));
  EXPECT_FALSE(less("+0/0:0:0", "-0/0:0:1"));
  for (const char* larger : {"1/0:0:0", "0/1:0:0", "0/0:1:0", "0/0:0:1", "0/0:0:0.001"}) {
    const std::string negative = std::string("-") + larger;
    EXPECT_TRUE(less("0/0:0:0", larger) && !less(larger, "0/0:0:0"));
    EXPECT_TRUE(less(negative.c_str(), "-0/0:0:0") && !less("-0/0:0:0", negative.c_str()));
  }
  EXPECT_TRUE(less("+0/0:0:0.000002", "+0/0:0:0.000001"));
  EXPECT_FALSE(less("-0/0:0:0.000002", "-0/0:0:0.000001"));
  EXPECT_THROW(static_cast<void>(MISSION_ELAPSED_TIME() < MISSION_ELAPSED_TIME("1/0:0:0")),
               ERROR_ARGUMENT);
}

}  // namespace
}  // namespace varnoth::test
