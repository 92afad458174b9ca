#pragma once

#include <cstdint>

namespace varnoth {

/// Whether moving a time by seconds gives leap seconds a label of their own (second 60).
enum class LEAP { IGNORED, OBSERVED };

/// A UTC time in its eight fields; the operations of UNIVERSAL_TIME work on it.
///
///     UTC_VALUES time{2004, 2, 28, 23, 59, 59, 0, 0};
///     time.AddSeconds(86401, LEAP::OBSERVED);  // 1 March, 00:00:00
///
/// The fields are those of a text: a month of 1 to 12, clock fields of two digits and fractions of
/// three.
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

  /// Moves the date by days of either sign. Throws ERROR_DATA, after a line at ALARM, for a step
  /// of more than 3660000 days, which leaves the four-digit years from any date, and for a month
  /// outside 1 to 12. The other operations throw the same.
  void AddDays(std::int64_t count);
  /// Moves the time by seconds of either sign. With leap seconds observed, a time that lands on a
  /// second of the table gets the label 60, and a time whose second field carries past such a
  /// second moves by one second less. Whole minutes in `count` have 60 s.
  void AddSeconds(std::int64_t count, LEAP leap);
  /// Move the time by days of 86400 s, without leap seconds.
  void AddMilliseconds(std::int64_t count);
  void AddMicroseconds(std::int64_t count);

  /// Corrects a time that was moved here from `start` by days of 86400 s for the leap seconds
  /// between the two.
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

/// Whether `a` is before `b`: by year, day of the year, millisecond of the day and microsecond.
bool IsEarlier(const UTC_VALUES& a, const UTC_VALUES& b);

}  // namespace varnoth
