#include "time/met_values.hpp"

#include <algorithm>
#include <climits>
#include <cstdint>

#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr int MAX_DAYS = 9999;

}  // namespace

void MET_VALUES::AddDays(int count) {
  if (count == 0) return;
  // Clamp a sum outside 32 bits: no text can show either bound, so it can't pass for a real value.
  const std::int64_t sum = days + std::int64_t{sign} * count;
  days = static_cast<int>(std::clamp<std::int64_t>(sum, INT_MIN, INT_MAX));
  if (days <= MAX_DAYS) return;
  GlobalLog.printf_line(ALARM, "MET_VALUES: exceeding representable range (days=%d)", days);
  throw "can not represent MET value";
}

void MET_VALUES::AddTo(int& field, int size, int count, void (MET_VALUES::*add_to_next)(int)) {
  if (count == 0) return;
  const std::int64_t carried = std::int64_t{count} * sign / size;
  (this->*add_to_next)(static_cast<int>(carried));
  std::int64_t sum = field + (count - size * carried) * sign;
  for (; sum >= size; sum -= size) (this->*add_to_next)(1);
  for (; sum < 0; sum += size) (this->*add_to_next)(-1);
  field = static_cast<int>(sum);
}

void MET_VALUES::AddHours(int count) { AddTo(hours, 24, count, &MET_VALUES::AddDays); }
void MET_VALUES::AddMinutes(int count) { AddTo(minutes, 60, count, &MET_VALUES::AddHours); }
void MET_VALUES::AddSeconds(int count) { AddTo(seconds, 60, count, &MET_VALUES::AddMinutes); }
void MET_VALUES::AddMilliseconds(int count) {
  AddTo(milliseconds, 1000, count, &MET_VALUES::AddSeconds);
}
void MET_VALUES::AddMicroseconds(int count) {
  AddTo(microseconds, 1000, count, &MET_VALUES::AddMilliseconds);
}

}  // namespace varnoth
