#include <cstdlib>
#include <cstring>

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

// Leap seconds and their table's two wrong days keep spans from being differences: a span may only
// be refused.
void FuzzUniversalTimes(const std::string& input) {
  Accepts([&] { Scanned<UNIVERSAL_TIME>(input) + SpanOf(input); });
}

void FuzzMissionTimes(const std::string& input) {
  Accepts([&] {
    const auto time = Scanned<MISSION_ELAPSED_TIME>(input);
    const DURATION span = SpanOf(input);
    const MISSION_ELAPSED_TIME moved = time + span;
    // Of a negative time the carries move the fields by the sign, on purpose.
    if (time.c_str()[0] != '+') return;
    Require(Microseconds(moved - time) == Microseconds(span), "a moved time differs by the span");
  });
  Accepts([&] { MISSION_ELAPSED_TIME::Parse(input.c_str()); });
}

/// Two times, a line each.
void FuzzLeapSeconds(const std::string& input) {
  Accepts([&] {
    const std::size_t end = input.find('\n');
    if (end == input.npos) return;
    const UTC_VALUES a = UNIVERSAL_TIME(input.substr(0, end).c_str()).Split();
    const UTC_VALUES b = UNIVERSAL_TIME(input.substr(end + 1).c_str()).Split();
    const int count = LeapSecondsBetween(a, b);
    Require(count == -LeapSecondsBetween(b, a), "leap seconds count alike in both directions");
    Require(std::abs(count) <= STATIC_OBJECT<LEAP_SECOND_TABLE>::Get().rows.GetLength(),
            "no more than the table has");
  });
}

}  // namespace varnoth::fuzz
