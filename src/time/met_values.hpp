#pragma once

namespace varnoth {

/// A mission elapsed time in its fields.
///
///     MET_VALUES values{1, 0, 23, 59, 59, 0, 0};
///     values.AddSeconds(1);  // 1 day
///
/// The counts are magnitudes; the sign holds for the whole value. No addition changes the sign: a
/// value that would pass zero gets a negative day count.
///
/// An addition multiplies its count by the sign in every field that it reaches. Carries pass from
/// field to field as counts too, so in a negative value the sign flips each carry once more. A sum
/// of more than 9999 days throws the text "can not represent MET value", after a line at ALARM.
struct MET_VALUES {
  int sign = 1;
  int days = 0;
  int hours = 0;
  int minutes = 0;
  int seconds = 0;
  int milliseconds = 0;
  int microseconds = 0;

  bool operator==(const MET_VALUES& other) const = default;

  void AddDays(int count);
  void AddHours(int count);
  void AddMinutes(int count);
  void AddSeconds(int count);
  void AddMilliseconds(int count);
  void AddMicroseconds(int count);

 private:
  void AddTo(int& field, int size, int count, void (MET_VALUES::*add_to_next)(int));
};

}  // namespace varnoth
