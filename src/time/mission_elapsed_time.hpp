#pragma once

#include <iosfwd>
#include <type_traits>

#include "time/duration.hpp"
#include "time/met_values.hpp"

namespace varnoth {

/// A signed time since the start of a mission, without a calendar, held as its text
///
///     +DDDD/HH:MM:SS.mmmuuu        for example -0001/23:59:59.000000
///
/// and used like this:
///
///     MISSION_ELAPSED_TIME time = MISSION_ELAPSED_TIME::Parse("0012/06:30:00.5");
///     time += DURATION(1, 0, 0);
///     std::puts(time.c_str());  // +0013/06:30:00.500000
///
/// A default value is the empty text. Every operation reads the digits and writes them back: a
/// field without digits, as in an empty value, throws ERROR_ARGUMENT with no log line. A result
/// that the text can't show throws ERROR_DATA, after a line at ALARM, and the value stays as it
/// was.
class MISSION_ELAPSED_TIME {
 public:
  MISSION_ELAPSED_TIME() = default;
  /// The value that MET_SCANNER::Scan reads. A faulty text gives the fields before the fault and a
  /// line at EXCEPTION, or throws as `Scan` does.
  explicit MISSION_ELAPSED_TIME(const char* source);
  explicit MISSION_ELAPSED_TIME(const MET_VALUES& values) { Format(values); }
  /// The same, but throws what MET_SCANNER::Parse throws for any faulty text.
  static MISSION_ELAPSED_TIME Parse(const char* source);

  const char* c_str() const { return text; }
  bool IsEmpty() const { return text[0] == '\0'; }

  MET_VALUES Split() const;
  void Format(const MET_VALUES& values);

  /// Moves the value by a span, with the rules of MET_VALUES for the sign. Throws what MET_VALUES
  /// throws.
  MISSION_ELAPSED_TIME& operator+=(const DURATION& span);
  /// Seconds as DURATION::FromSeconds reads them.
  MISSION_ELAPSED_TIME& operator+=(double seconds) {
    return *this += DURATION::FromSeconds(seconds);
  }
  friend MISSION_ELAPSED_TIME operator+(MISSION_ELAPSED_TIME a, const DURATION& span) {
    return a += span;
  }
  friend MISSION_ELAPSED_TIME operator+(MISSION_ELAPSED_TIME a, double seconds) {
    return a += seconds;
  }
  /// The span from b to a.
  friend DURATION operator-(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b);

  /// Compares the texts.
  friend bool operator==(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b);
  /// The order down to the millisecond; microseconds don't count. Of two positive times that agree
  /// down to the millisecond each counts as less than the other: test for equality first.
  friend bool operator<(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b);

 private:
  char text[22] = {};
};

static_assert(sizeof(MISSION_ELAPSED_TIME) == 22 &&
              std::is_trivially_copyable_v<MISSION_ELAPSED_TIME>);

std::ostream& operator<<(std::ostream& stream, const MISSION_ELAPSED_TIME& time);

}  // namespace varnoth
