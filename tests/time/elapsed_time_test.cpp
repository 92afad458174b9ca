#include <limits>
#include <sstream>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "support/log_capture.hpp"
#include "time/mission_elapsed_time.hpp"

namespace varnoth::test {
namespace {

using DurationTest = LoggedTest;
using MissionElapsedTimeTest = LoggedTest;
using MET = MISSION_ELAPSED_TIME;

std::int64_t Total(const DURATION& span) {
  return (span.Days() * 86400000LL + span.Milliseconds()) * 1000 + span.Microseconds();
}

TEST(Duration, ItsFieldsKeepTheSumAndTheirBounds) {
  constexpr std::int64_t PARTS[] = {0,           -1,         999,           -1000,
                                    86399999,    86400000,   -86400001,     2147483647,
                                    -2147483648, -987654321, 1234567890123, -86400000000};
  for (const std::int64_t ms : PARTS) {
    for (const std::int64_t us : PARTS) {
      DURATION span(3, ms, us);
      span.AddMicroseconds(us, false);
      EXPECT_EQ(Total(span), (3 * 86400000LL + ms) * 1000 + 2 * us) << ms << " ms " << us << " us";
      EXPECT_LT(std::abs(span.Milliseconds()), 86400000) << ms << " ms " << us << " us";
      EXPECT_LT(std::abs(span.Microseconds()), 1000) << ms << " ms " << us << " us";
    }
  }
}

TEST_F(DurationTest, MoreThanTheFieldsHoldIsRefused) {
  for (const std::int64_t days : {std::int64_t{2147483646}, std::int64_t{-2147483646},
                                  std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(ThrownText([&] { DURATION(days, 0, 0); }), "duration range error") << days;
  }
  EXPECT_EQ(DURATION(2147483645, 0, 0).Days(), 2147483645);
  DURATION span(1, 2, 3);
  TakeLog();
  EXPECT_EQ(ThrownText([&] { span.AddMicroseconds(2147482998, true); }), "duration range error");
  EXPECT_EQ(Log(), "ALARM : log : DURATION: exceeding representable range (d=1 ms=2 us=3)\n");
  span.AddMicroseconds(2147482997, true);
  EXPECT_EQ(span.Microseconds(), 2147483000);
}

TEST(Duration, SecondsAreTruncatedToMillisecondsButFlooredForTheirFraction) {
  EXPECT_EQ(DURATION::FromSeconds(86401.5), DURATION(1, 1500, 0));
  EXPECT_EQ(DURATION::FromSeconds(0.0015004), DURATION(0, 1, 500));
  EXPECT_EQ(DURATION::FromSeconds(0.0019999), DURATION(0, 2, 0));
  EXPECT_EQ(DURATION::FromSeconds(-1.25), DURATION(0, -1250, 0));
  EXPECT_EQ(DURATION::FromSeconds(-0.00025), DURATION(0, 0, 750));
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double bad : {1e16, -1e16, 1e308, infinity, -infinity, infinity - infinity}) {
    EXPECT_THROW(DURATION::FromSeconds(bad), ERROR_PARAMETER) << bad;
  }
  EXPECT_EQ(DURATION(-2, 1500, 250).ToSeconds(), -172798.49975);
  // A double's last place is 3e-5 s at this span, that of 64 bits 1.5e-8 s.
  const long double rest = DURATION(2000000, 0, 1).ToExtendedSeconds() - 172800000000.0L;
  EXPECT_NEAR(static_cast<double>(rest), 1e-6, 1.5e-8);
}

TEST(MissionElapsedTime, SumsAndDifferencesAgreeWithACount) {
  const MET start("+0012/23:59:59.999999");
  for (const std::int64_t us : {0LL, 1LL, 999999LL, 1000000LL, 86400000001LL, 5000000000000LL, -1LL,
                                -1000000LL, -86400000000LL, -1123199999999LL}) {
    const MET moved = start + DURATION(0, 0, us);
    EXPECT_EQ(Total(moved - start), us);
    EXPECT_EQ(Total(start - moved), -us);
  }
  EXPECT_EQ(start + 0.0000011, start + DURATION(0, 0, 1));
  EXPECT_STREQ((start + -0.5).c_str(), "+0012/23:59:59.499999");
  EXPECT_THROW(start + 1e300, ERROR_PARAMETER);
  EXPECT_EQ(MET("-0001/02:03:04.005006") - MET("+1/0:0:0.5"), DURATION(-2, -7384505, -6));
}

// A step of less than its next unit moves a negative value as it should, but a carry moves the next
// field away from zero, and a step of whole units is counted three times over.
TEST(MissionElapsedTime, CarriesOfANegativeValueGoByTheSign) {
  const MET time("-0001/00:00:05.300000");
  for (const auto& [step, moved] : {std::pair(DURATION(0, 200, 0), "-0001/00:00:05.100000"),
                                    std::pair(DURATION(0, 400, 0), "-0001/00:00:06.900000"),
                                    std::pair(DURATION(0, 2000, 0), "-0001/00:00:11.300000"),
                                    std::pair(DURATION(1, 0, 0), "-0000/00:00:05.300000"),
                                    std::pair(DURATION(-1, 0, 0), "-0002/00:00:05.300000")}) {
    EXPECT_STREQ((time + step).c_str(), moved);
  }
}

TEST_F(MissionElapsedTimeTest, WhatTheTextCanNotShowIsToldAndTheValueStays) {
  MET time("+9999/23:59:59.999999");
  const MET before = time;
  EXPECT_EQ(MET("9998/23:59:59.999999") + 86400.0, time);
  EXPECT_EQ(ThrownText([&] { time += DURATION(0, 0, 1); }), "can not represent MET value");
  EXPECT_THROW(time += DURATION(-10000, 0, 0), ERROR_DATA);
  EXPECT_EQ(time, before);
  const MET half("-3/4:x");
  GlobalLog.set(INFO) << half << "\n";
  EXPECT_EQ(Log(),
            "ALARM : log : MET_VALUES: exceeding representable range (days=10000)\n"
            "ALARM : log : MISSION_ELAPSED_TIME: no text can show the time "
            "+-0001/23:59:59.999999\n"
            "EXCEP : log : MET_SCANNER: TIME: scanner: unhandled character\n"
            "INFO  : log : -0003/04:00:00.000000\n");
  EXPECT_THROW(MET("10000/0:0:0"), ERROR_DATA);
  EXPECT_THROW(MET() + 1.0, ERROR_ARGUMENT);
  EXPECT_TRUE(MET().IsEmpty() && !time.IsEmpty());
  EXPECT_EQ((std::ostringstream() << time).str(), time.c_str());
}

TEST(MissionElapsedTime, TheOrderIsBlindToMicroseconds) {
  const auto less = [](const std::string& a, const std::string& b) {
    return MET(a.c_str()) < MET(b.c_str());
  };
  EXPECT_TRUE(less("-0/0:0:1", "+0/0:0:0"));
  EXPECT_FALSE(less("+0/0:0:0", "-0/0:0:1"));
  for (const std::string larger : {"1/0:0:0", "0/1:0:0", "0/0:1:0", "0/0:0:1", "0/0:0:0.001"}) {
    EXPECT_TRUE(less("0/0:0:0", larger) && !less(larger, "0/0:0:0")) << larger;
    EXPECT_TRUE(less("-" + larger, "-0/0:0:0") && !less("-0/0:0:0", "-" + larger)) << larger;
  }
  EXPECT_TRUE(less("+0/0:0:0.000002", "+0/0:0:0.000001"));
  EXPECT_FALSE(less("-0/0:0:0.000002", "-0/0:0:0.000001"));
  EXPECT_THROW(static_cast<void>(MET() < MET("1/0:0:0")), ERROR_ARGUMENT);
}

}  // namespace
}  // namespace varnoth::test
