#include <limits>
#include <sstream>

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"
#include "time/met_scanner.hpp"
#include "time/mission_elapsed_time.hpp"

namespace varnoth::test {
namespace {

using DurationTest = LoggedTest;
using MissionElapsedTimeTest = LoggedTest;
using MET = MISSION_ELAPSED_TIME;

std::int64_t Total(const DURATION& span) {
  return (span.Days() * 86400000LL + span.Milliseconds()) * 1000 + span.Microseconds();
}

TEST_F(DurationTest, ItsFieldsKeepTheSumAndTheirBounds) {
  constexpr std::int64_t PARTS[] = {0,           -1,          999,           -1000,       86400000,
                                    -2147483648, 98765432199, 1234567890123, -86400000000};
  for (const std::int64_t ms : PARTS) {
    for (const std::int64_t us : PARTS) {
      DURATION span(3, ms, us);
      span.AddMicroseconds(us, false);
      EXPECT_EQ(Total(span), (3 * 86400000LL + ms) * 1000 + 2 * us) << ms << " ms " << us << " us";
      EXPECT_TRUE(std::abs(span.Milliseconds()) < 86400000 && std::abs(span.Microseconds()) < 1000);
    }
  }
}

TEST_F(DurationTest, MoreThanTheFieldsHoldIsRefused) {
  for (const std::int64_t days : {2147483646L, -2147483646L, std::numeric_limits<long>::max()}) {
    EXPECT_EQ(ThrownText([&] { DURATION(days, 0, 0); }), "duration range error") << days;
  }
  DURATION span(1, 2, 3);
  TakeLog();
  EXPECT_EQ(ThrownText([&] { span.AddMicroseconds(2147482998, true); }), "duration range error");
  EXPECT_EQ(Log(), "ALARM : log : DURATION: exceeding representable range (d=1 ms=2 us=3)\n");
}

TEST_F(DurationTest, SecondsAreTruncatedOrFlooredToMillisecondsAndFlooredForTheirFraction) {
  EXPECT_EQ(DURATION::FromSeconds(86401.5), DURATION(1, 1500, 0));
  EXPECT_EQ(DURATION::FromSeconds(0.0019999), DURATION(0, 2, 0));
  EXPECT_EQ(DURATION::FromSeconds(-0.0005), DURATION(0, 0, 500));
  EXPECT_EQ(DURATION::FromSecondsByFloor(-0.0005), DURATION(0, -1, 500));
  for (const double bad : {1e16, -1e16, 1e308, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_THROW(DURATION::FromSeconds(bad), ERROR_PARAMETER) << bad;
  }
  EXPECT_EQ(DURATION(-2, 1500, 250).ToSeconds(), -172798.49975);
  // A double's last place is 3e-5 s at this span, that of 64 bits 1.5e-8 s.
  const long double rest = DURATION(2000000, 0, 1).ToExtendedSeconds() - 172800000000.0L;
  EXPECT_NEAR(static_cast<double>(rest), 1e-6, 1.5e-8);
}

constexpr struct {
  const char* input;
  MET_VALUES values;
  const char* fault = "nothing thrown";
} TEXTS[] = {
    {"-0001/02:03:04.000005", {-1, 1, 2, 3, 4, 0, 5}},
    {" -0001/02:03:04.5", {1, 1, 2, 3, 4, 500, 0}},
    {"\t1-2-3-4Z", {1, 1, 2, 3, 4, 0, 0}},
    {"+12 / 99:99:99 .1Z", {1, 12, 99, 99, 99, 100, 0}},
    {"-5/06:07", {-1, 5, 6, 7}, "TIME: scanner: unexpected end of string"},
    {"-5/06:xx", {-1, 5, 6}, "TIME: scanner: unhandled character"},
    {"--5", {-1}, "unexpected token in GetNumber()"},
    {"1+", {1, 1}, "unexpected token in GetSeparator()"},
};

TEST_F(MissionElapsedTimeTest, ATextFillsTheFieldsUpToTheFault) {
  for (const auto& [input, values, fault] : TEXTS) {
    MET_SCANNER scanner;
    scanner.Scan("-9/9:9:9.999999");
    EXPECT_EQ(ThrownText([&, text = input] { scanner.Parse(text); }), fault);
    EXPECT_EQ(scanner.values, values) << input;
    EXPECT_EQ(scanner.Scan(input), std::string_view(fault) == "nothing thrown") << input;
  }
}

TEST_F(MissionElapsedTimeTest, SumsAgreeWithACountButThoseOfANegativeValueGoByTheSign) {
  const MET start("+0012/23:59:59.999999");
  for (const std::int64_t us : {1L, 86400000001L, 5000000000000L, -1000000L, -1123199999999L}) {
    EXPECT_EQ(Total(start + DURATION(0, 0, us) - start), us);
  }
  EXPECT_STREQ((start + -0.5).c_str(), "+0012/23:59:59.499999");
  EXPECT_EQ(MET("-0001/02:03:04.005006") - MET("+1/0:0:0.5"), DURATION(-2, -7384505, -6));
  // A carry moves the next field of a negative value away from zero, and a step of whole units
  // counts three times.
  EXPECT_STREQ((MET("-0001/0:0:5.3") + DURATION(0, 400, 0)).c_str(), "-0001/00:00:06.900000");
  EXPECT_STREQ((MET("-0001/0:0:5.3") + DURATION(0, 2000, 0)).c_str(), "-0001/00:00:11.300000");
}

TEST_F(MissionElapsedTimeTest, WhatTheTextCanNotShowIsRefusedAndTheValueStays) {
  MET time("9998/23:59:59.999999");
  const MET before = time += DURATION(1, 0, 0);
  EXPECT_EQ(ThrownText([&] { time += DURATION(0, 0, 1); }), "can not represent MET value");
  EXPECT_THROW(time += DURATION(-10000, 0, 0), ERROR_DATA);
  EXPECT_EQ(TakeLines(),
            "ALARM MET_VALUES: exceeding representable range (days=10000)\n"
            "ALARM MISSION_ELAPSED_TIME: no text can show the time +-0001/23:59:59.999999\n");
  EXPECT_EQ(time, before);
  EXPECT_EQ((std::ostringstream() << time).str(), "+9999/23:59:59.999999");
  EXPECT_TRUE(MET().IsEmpty() && !time.IsEmpty());
}

TEST_F(MissionElapsedTimeTest, TheOrderIsBlindToMicroseconds) {
  constexpr const char* RISING[] = {"-1/0:0:0",     "-0/1:0:0", "-0/0:1:0",    "-0/0:0:1",
                                    "-0/0:0:0.001", "-0/0:0:0", "0/0:0:0.001", "0/0:0:1",
                                    "0/0:1:0",      "0/1:0:0",  "1/0:0:0"};
  for (const auto& a : RISING) {
    for (const auto& b : RISING) {
      EXPECT_TRUE(&a == &b || (MET(a) < MET(b)) == (&a < &b)) << a << " and " << b;
    }
  }
  EXPECT_TRUE(MET("0/0:0:0.000002") < MET("0/0:0:0.000001"));
  EXPECT_FALSE(MET("-0/0:0:0.000002") < MET("-0/0:0:0.000001"));
}

}  // namespace
}  // namespace varnoth::test
