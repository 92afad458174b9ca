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
/// A default value is the empty text. Every operation reads the digits and writes them back:
/// reading a field that holds no digits throws ERROR_ARGUMENT; a result that the text can't show is
/// logged and throws ERROR_DATA, and the value then stays as it was.
class MISSION_ELAPSED_TIME {
 public:
  MISSION_ELAPSED_TIME() = default;
  /// What MET_SCANNER reads; of a faulty text the fields up to the fault, which is logged.
  explicit MISSION_ELAPSED_TIME(const char* source);
  explicit MISSION_ELAPSED_TIME(const MET_VALUES& values) { Format(values); }
  /// The same for a text that must be whole: throws the scanner's text for a faulty one.
  static MISSION_ELAPSED_TIME Parse(const char* source);

  const char* c_str() const { return text; }
  bool IsEmpty() const { return text[0] == '\0'; }

  MET_VALUES Split() const;
  void Format(const MET_VALUES& values);

  /// More than 9999 days throw the text "can not represent MET value".
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

  /// Equality is that of the texts.
  friend bool operator==(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b);
  /// The order down to the millisecond. Microseconds take no part, and times that are equal down to
  /// the millisecond count as less if they are positive: test for equality first.
  friend bool operator<(const MISSION_ELAPSED_TIME& a, const MISSION_ELAPSED_TIME& b);

 private:
  char text[22] = {};
};

static_assert(sizeof(MISSION_ELAPSED_TIME) == 22 &&
              std::is_trivially_copyable_v<MISSION_ELAPSED_TIME>);

std::ostream& operator<<(std::ostream& stream, const MISSION_ELAPSED_TIME& time);

}  // namespace varnoth
