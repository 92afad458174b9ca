#include "time/duration.hpp"

#include <limits>

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using DurationTest = LoggedTest;

TEST(Duration, ItsFieldsKeepTheSumAndTheirBounds) {
  constexpr std::int64_t PARTS[] = {0,         1,         -1,         999,           -1000,
                                    86399999,  86400000,  -86400001,  2147483647,    -2147483648,
                                    123456789, 999999999, -987654321, 1234567890123, -86400000000};
  for (const std::int64_t ms : PARTS) {
    for (const std::int64_t us : PARTS) {
      DURATION span(3, ms, us);
      span.AddMicroseconds(us, false);
      EXPECT_EQ((span.Days() * 86400000LL + span.Milliseconds()) * 1000 + span.Microseconds(),
                (3 * 86400000LL + ms) * 1000 + 2 * us);
      EXPECT_LT(std::abs(span.Milliseconds()), 86400000);
      EXPECT_LT(std::abs(span.Microseconds()), 1000);
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
  EXPECT_EQ(TakeLog(), "DURATION: exceeding representable range (d=1 ms=2 us=3)\n");
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
}

TEST(Duration, GivesItsSeconds) {
  const DURATION span(-2, 1500, 250);
  EXPECT_EQ(span.ToSeconds(), -172798.49975);
  // A double's last place is 3e-5 s at this span, that of 64 bits 1.5e-8 s.
  const long double rest = DURATION(2000000, 0, 1).ToExtendedSeconds() - 172800000000.0L;
  EXPECT_NEAR(static_cast<double>(rest), 1e-6, 1.5e-8);
}

}  // namespace
}  // namespace varnoth::test
