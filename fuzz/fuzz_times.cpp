#include <algorithm>
#include <functional>
#include <iterator>
#include <sstream>

#include "fuzz_target.hpp"
#include "time/leap_seconds.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"

namespace varnoth::fuzz {

namespace {

std::int64_t Microseconds(const DURATION& span) {
  return (span.Days() * std::int64_t{86400000} + span.Milliseconds()) * 1000 + span.Microseconds();
}

/// Whether the date is days away from every leap second. Beside one, a span need not be a
/// difference: the same label can stand for two moments.
bool IsFarFromLeapSeconds(const UNIVERSAL_TIME& time) { return time.Day() > 2 && time.Day() < 28; }

bool KeepsSpan(const UNIVERSAL_TIME& time, const UNIVERSAL_TIME& moved) {
  return IsFarFromLeapSeconds(time) && IsFarFromLeapSeconds(moved);
}

/// In a negative time the carries move the fields by the sign, on purpose.
bool KeepsSpan(const MISSION_ELAPSED_TIME& time, const MISSION_ELAPSED_TIME& /*moved*/) {
  return time.c_str()[0] == '+';
}

template <class TIME>
void FuzzTime(const std::string& input) {
  Accepts([&] {
    const TIME time(input.c_str());
    Require(TIME(time.c_str()) == time, "a printed time scans to itself");
    // Any span up to some years, the fields of either sign. A negative time carries milliseconds
    // one second at a time: a few minutes of them at most.
    const auto bits = static_cast<std::int64_t>(std::hash<std::string>{}(input));
    const DURATION span(bits % 4000, -bits % 200000, bits % 100000000);
    const TIME moved = time + span;
    if (!KeepsSpan(time, moved)) return;
    Require(Microseconds(moved - time) == Microseconds(span), "a moved time differs by the span");
    // Compare spans, since the fields of a text may be beyond their range, such as a second 60 on
    // any day.
    Require(Microseconds(moved + (time - moved) - time) == 0, "the way back leads back");
  });
}

}  // namespace

void FuzzUniversalTimes(const std::string& input) { FuzzTime<UNIVERSAL_TIME>(input); }

void FuzzMissionTimes(const std::string& input) {
  FuzzTime<MISSION_ELAPSED_TIME>(input);
  Accepts([&] { MISSION_ELAPSED_TIME::Parse(input.c_str()); });
}

/// Up to three times, one per line.
void FuzzLeapSeconds(const std::string& input) {
  Accepts([&] {
    std::istringstream lines(input);
    UNIVERSAL_TIME times[3];
    for (UNIVERSAL_TIME& time : times) {
      std::string line;
      if (std::getline(lines, line)) time = UNIVERSAL_TIME(line.c_str());
    }
    std::sort(std::begin(times), std::end(times));
    const auto between = [&times](std::size_t a, std::size_t b) {
      return LeapSecondsBetween(times[a].Split(), times[b].Split());
    };
    Require(between(0, 2) == -between(2, 0), "leap seconds count alike in both directions");
    // Both counts leave out a leap second that begins or ends at the time in between.
    if (!IsFarFromLeapSeconds(times[1])) return;
    Require(between(0, 1) + between(1, 2) == between(0, 2), "counts of two spans add up");
  });
}

}  // namespace varnoth::fuzz
