#include "time/duration.hpp"

#include <cmath>

#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr std::int64_t MAX_DAYS = 2147483646;
constexpr std::int64_t MAX_FIELD = 2147483000;
constexpr std::int64_t DAY_MS = 86400000;
constexpr std::int64_t DAY_US = 86400000000;
constexpr double MAX_SECONDS = 9223372036854775.0;  // 2^63 ms

double MillisecondsOf(double seconds) {
  // A quiet comparison, done before the product: neither a NaN nor an overflow may trap.
  if (!std::isless(std::fabs(seconds), MAX_SECONDS)) throw ERROR_PARAMETER();
  return seconds * 1000;
}

/// The fraction of a number of milliseconds above its floor, to the nearest microsecond.
std::int64_t Remainder(double milliseconds) {
  return static_cast<std::int64_t>(std::rint((milliseconds - std::floor(milliseconds)) * 1000));
}

std::int32_t Low32(std::int64_t value) { return static_cast<std::int32_t>(value); }

}  // namespace

DURATION::DURATION(std::int64_t d, std::int64_t ms, std::int64_t us) {
  AddDays(d);
  AddMilliseconds(ms);
  AddMicroseconds(us);
}

DURATION DURATION::FromSeconds(double seconds) {
  const double x = MillisecondsOf(seconds);
  return {0, static_cast<std::int64_t>(x), Remainder(x)};
}

DURATION DURATION::FromSecondsByFloor(double seconds) {
  const double x = MillisecondsOf(seconds);
  return {0, static_cast<std::int64_t>(std::floor(x)), Remainder(x)};
}

void DURATION::AddDays(std::int64_t count) {
  if (count == 0) return;
  std::int64_t sum = Sum(days, count);
  const std::int64_t excess = Product(sum / MAX_DAYS, -(MAX_DAYS - 1));
  if (excess != 0) {
    sum = Sum(sum, -Product(excess, MAX_DAYS));
    AddMilliseconds(Product(excess, DAY_MS), true);
  }
  days = Low32(sum);
}

void DURATION::AddMilliseconds(std::int64_t count, bool raw) {
  if (count == 0) return;
  std::int64_t sum = 0;
  if (raw) {
    sum = Sum(count, milliseconds);
  } else {
    AddDays(count / DAY_MS);
    sum = count % DAY_MS + milliseconds;
    AddDays(sum / DAY_MS);
    sum %= DAY_MS;
  }
  const std::int64_t excess = sum / MAX_FIELD * MAX_FIELD;
  if (excess != 0) {
    sum = Sum(sum, excess);
    milliseconds = Low32(excess);
    AddMicroseconds(Product(sum, 1000), true);
  }
  milliseconds = Low32(sum);
}

void DURATION::AddMicroseconds(std::int64_t count, bool raw) {
  if (count == 0) return;
  if (!raw) {
    AddDays(count / DAY_US);
    count %= DAY_US;
    AddMilliseconds(count / 1000);
    count %= 1000;
  }
  std::int64_t sum = Sum(count, microseconds);
  if (sum > MAX_FIELD) Refuse();
  if (!raw) {
    AddMilliseconds(sum / 1000);
    sum %= 1000;
  }
  microseconds = Low32(sum);
}

double DURATION::ToSeconds() const {
  return days * 24.0 * 60.0 * 60.0 + milliseconds / 1000.0 + microseconds / 1e6;
}

long double DURATION::ToExtendedSeconds() const {
  return milliseconds / 1000.0L + days * 86400.0L + microseconds / 1e6L;
}

void DURATION::Refuse() const {
  GlobalLog.set(ALARM) << "DURATION: exceeding representable range (d=" << days
                       << " ms=" << milliseconds << " us=" << microseconds << ")\n";
  throw "duration range error";
}

// A full day field spills whole days into milliseconds and microseconds. Their number may exceed
// even 64 bits: refuse that in either direction.
std::int64_t DURATION::Sum(std::int64_t a, std::int64_t b) const {
  std::int64_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) Refuse();
  return result;
}

std::int64_t DURATION::Product(std::int64_t a, std::int64_t b) const {
  std::int64_t result = 0;
  if (__builtin_mul_overflow(a, b, &result)) Refuse();
  return result;
}

}  // namespace varnoth
