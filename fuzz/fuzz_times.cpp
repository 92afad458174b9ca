#include <cstdlib>
#include <cstring>

#include "fuzz_target.hpp"
#include "time/leap_seconds.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"

namespace varnoth::fuzz {

namespace {

/// A span out of the input's last bytes, up to some years.
DURATION SpanOf(const std::string& input) {
  std::int32_t parts[3] = {};
  std::memcpy(parts, input.data(), std::min(input.size(), sizeof parts));
  return {parts[0] % 4000, parts[1], parts[2]};
}

std::int64_t Microseconds(const DURATION& span) {
  return (span.Days() * std::int64_t{86400000} + span.Milliseconds()) * 1000 + span.Microseconds();
}

/// Of a time that a text gives, its own text gives it again; where steps return, a time moved by a
/// span differs by that span.
template <class TIME>
void ExpectLaws(const std::string& input, bool (*steps_return)(const TIME&)) {
  Accepts([&] {
    const TIME time(input.c_str());
    Require(TIME(time.c_str()) == time, "a printed time scans to itself");
    const DURATION span = SpanOf(input);
    const TIME moved = time + span;
    Require(!steps_return(time) || Microseconds(moved - time) == Microseconds(span),
            "the difference of a moved time is the span");
  });
}

}  // namespace

// Leap seconds and their table's two wrong days keep spans from being differences.
void FuzzUniversalTimes(const std::string& input) {
  ExpectLaws<UNIVERSAL_TIME>(input, [](const UNIVERSAL_TIME&) { return false; });
}

void FuzzMissionTimes(const std::string& input) {
  // Of a negative time the carries move the fields by the sign, on purpose.
  ExpectLaws<MISSION_ELAPSED_TIME>(
      input, [](const MISSION_ELAPSED_TIME& time) { return time.c_str()[0] == '+'; });
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
