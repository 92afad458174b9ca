#pragma once

#include <cstdint>

namespace varnoth {

/// Whether moving a time by seconds gives leap seconds a label of their own (second 60).
enum class LEAP { IGNORED, OBSERVED };

/// A UTC time in its eight fields: what the operations of UNIVERSAL_TIME work on. The fields are
/// those of a text: a month of 1 to 12, clock fields of two digits and fractions of three.
struct UTC_VALUES {
  int year = 0;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
  int microsecond = 0;

  bool operator==(const UTC_VALUES& other) const = default;

  /// Moves the date by days of either sign. A step that leaves the four-digit years whatever the
  /// date, or a month outside 1 to 12, is logged and throws ERROR_DATA.
  void AddDays(std::int64_t count);
  /// Moves the time by seconds of either sign. With leap seconds observed, a time that comes to
  /// stand on one listed in the table keeps or takes the second 60, and one that a carry of the
  /// second field takes past it comes out one label earlier. Whole minutes in `count` are 60 s.
  void AddSeconds(std::int64_t count, LEAP leap);
  /// Move the time by days of 86400 s, without leap seconds.
  void AddMilliseconds(std::int64_t count);
  void AddMicroseconds(std::int64_t count);

  /// Behind a step from `start` by days of 86400 s: takes back the leap seconds that were passed.
  void CorrectForLeapSeconds(const UTC_VALUES& start);

 private:
  void NextMonth();
  void PreviousMonth();
  void AddHours(std::int64_t count);
  void AddMinutes(std::int64_t count);
  bool EndsInLeapSecond() const;
  bool FollowsLeapSecond() const;
};

static_assert(sizeof(UTC_VALUES) == 32);

/// Order of two times: by year, day of the year, millisecond of the day and microsecond.
bool IsEarlier(const UTC_VALUES& a, const UTC_VALUES& b);

}  // namespace varnoth
