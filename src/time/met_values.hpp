#pragma once

namespace varnoth {

/// A mission elapsed time in its fields. The counts are magnitudes; the sign holds for the value as
/// a whole, and no addition changes it: a value that would pass zero gets a negative day count.
///
/// The additions multiply a count by the sign once per field, and their carries go on as +1 and -1,
/// so that in a negative value a carry moves the next field by the sign. More than 9999 days are
/// logged and throw the text "can not represent MET value".
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
