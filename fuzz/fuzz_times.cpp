#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <vector>

#include "fuzz_target.hpp"
#include "time/leap_seconds.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"

namespace varnoth::fuzz {

namespace {

/// A span out of the input's first bytes, up to some years.
DURATION SpanOf(const std::string& input) {
  std::int32_t parts[3] = {};
  std::memcpy(parts, input.data(), std::min(input.size(), sizeof parts));
  return {parts[0] % 4000, parts[1], parts[2]};
}

std::int64_t Microseconds(const DURATION& span) {
  return (span.Days() * std::int64_t{86400000} + span.Milliseconds()) * 1000 + span.Microseconds();
}

/// The time of a text, if it is one; its own text gives it again.
template <class TIME>
TIME Scanned(const std::string& input) {
  const TIME time(input.c_str());
  Require(TIME(time.c_str()) == time, "a printed time scans to itself");
  return time;
}

}  // namespace

/// Whether the date is days away from every leap second. Beside one, a span need not be a
/// difference: the same label can stand for two moments.
bool IsFarFromLeapSeconds(const UNIVERSAL_TIME& time) { return time.Day() > 2 && time.Day() < 28; }

void FuzzUniversalTimes(const std::string& input) {
  Accepts([&] {
    const auto time = Scanned<UNIVERSAL_TIME>(input);
    const DURATION span = SpanOf(input);
    const UNIVERSAL_TIME moved = time + span;
    if (!IsFarFromLeapSeconds(time) || !IsFarFromLeapSeconds(moved)) return;
    Require(Microseconds(moved - time) == Microseconds(span), "a moved time differs by the span");
    // As a span, since a second 60 is read on any day.
    Require(Microseconds((moved - span) - time) == 0, "a span that is taken away leads back");
  });
}

void FuzzMissionTimes(const std::string& input) {
  Accepts([&] {
    const auto time = Scanned<MISSION_ELAPSED_TIME>(input);
    const DURATION span = SpanOf(input);
    const MISSION_ELAPSED_TIME moved = time + span;
    // Of a negative time the carries move the fields by the sign, on purpose.
    if (time.c_str()[0] != '+') return;
    Require(Microseconds(moved - time) == Microseconds(span), "a moved time differs by the span");
    // As a span, since the fields of a text may be beyond their range.
    const MISSION_ELAPSED_TIME back = moved + (time - moved);
    Require(Microseconds(back - time) == 0, "the way back leads back");
  });
  Accepts([&] { MISSION_ELAPSED_TIME::Parse(input.c_str()); });
}

/// Two or three times, a line each.
void FuzzLeapSeconds(const std::string& input) {
  Accepts([&] {
    std::istringstream lines(input);
    std::vector<UNIVERSAL_TIME> times;
    for (std::string line; times.size() < 3 && std::getline(lines, line);) {
      times.emplace_back(line.c_str());
    }
    if (times.size() < 2) return;
    std::sort(times.begin(), times.end());
    const auto between = [&times](std::size_t a, std::size_t b) {
      return LeapSecondsBetween(times[a].Split(), times[b].Split());
    };
    const std::size_t last = times.size() - 1;
    Require(between(0, last) == -between(last, 0), "leap seconds count alike in both directions");
    Require(std::abs(between(0, last)) <= STATIC_OBJECT<LEAP_SECOND_TABLE>::Get().rows.GetLength(),
            "no more than the table has");
    // Both counts leave out a leap second that begins or ends at the time in between.
    if (!IsFarFromLeapSeconds(times[1])) return;
    Require(between(0, 1) + between(1, last) == between(0, last), "counts of two spans add up");
  });
}

}  // namespace varnoth::fuzz
