#include "time/mission_elapsed_time.hpp"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <tuple>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "time/digit_field.hpp"
#include "time/met_scanner.hpp"

namespace varnoth {

namespace {

constexpr int TEXT_LENGTH = 21;

DURATION SinceStart(const MISSION_ELAPSED_TIME& time) {
  const MET_VALUES v = time.Split();
  const std::int64_t sign = v.sign;
  return {sign * v.days,
          sign * (v.hours * 3600000 + v.minutes * 60000 + v.seconds * 1000 + v.milliseconds),
          sign * v.microseconds};
}

auto OrderOf(const MET_VALUES& v) {
  return std::make_tuple(v.days, v.hours, v.minutes, v.seconds, v.milliseconds);
}

}  // namespace

MISSION_ELAPSED_TIME::MISSION_ELAPSED_TIME(const char* source) {
  MET_SCANNER scanner;
  scanner.Scan(source);
  Format(scanner.values);
}

MISSION_ELAPSED_TIME MISSION_ELAPSED_TIME::Parse(const char* source) {
  MET_SCANNER scanner;
  scanner.Parse(source);
  return MISSION_ELAPSED_TIME(scanner.values);
}

MET_VALUES MISSION_ELAPSED_TIME::Split() const {
  MET_VALUES values;
  values.sign = text[0] == '-' ? -1 : 1;
  values.days = ReadDigits(text + 1, 4);
  values.hours = ReadDigits(text + 6, 2);
  values.minutes = ReadDigits(text + 9, 2);
  values.seconds = ReadDigits(text + 12, 2);
  values.milliseconds = ReadDigits(text + 15, 3);
  values.microseconds = ReadDigits(text + 18, 3);
  return values;
}

void MISSION_ELAPSED_TIME::Format(const MET_VALUES& v) {
  char printed[128];
  const int length = std::snprintf(printed, sizeof printed, "%c%.4d/%.2d:%.2d:%.2d.%.3d%.3d",
                                   v.sign < 0 ? '-' : '+', v.days, v.hours, v.minutes, v.seconds,
                                   v.milliseconds, v.microseconds);
  // The widths are minimum widths: the length is right only if every field fits.
  if (length != TEXT_LENGTH) {
    GlobalLog.printf_line(ALARM, "MISSION_ELAPSED_TIME: no text can show the time %s", printed);
    throw ERROR_DATA();
  }
  std::memcpy(text, printed, sizeof text);
}

MISSION_ELAPSED_TIME& MISSION_ELAPSED_TIME::operator+=(const DURATION& span) {
  MET_VALUES values = Split();
  values.AddDays(span.Days());
  values.AddMilliseconds(span.Milliseconds());
  values.AddMicroseconds(span.Microseconds());
  Format(values);
  return *this;
}

DURATION operator-(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b) {
  const DURATION u = SinceStart(a);
  const DURATION v = SinceStart(b);
  return {u.Days() - v.Days(), u.Milliseconds() - v.Milliseconds(),
          u.Microseconds() - v.Microseconds()};
}

bool operator==(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b) {
  return std::strcmp(a.text, b.text) == 0;
}

bool operator<(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b) {
  const MET_VALUES u = a.Split();
  const MET_VALUES v = b.Split();
  if (u.sign != v.sign) return u.sign < v.sign;
  return u.sign > 0 ? OrderOf(u) <= OrderOf(v) : OrderOf(u) > OrderOf(v);
}

std::ostream& operator<<(std::ostream& stream, const MISSION_ELAPSED_TIME& time) {
  return stream << time.c_str();
}

}  // namespace varnoth
