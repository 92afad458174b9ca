#pragma once

#include "foundation/string.hpp"
#include "time/duration.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"

namespace varnoth {

enum RECORD_ITEM_TYPE : int {
  RECORD_INT = 1,
  RECORD_DOUBLE = 2,
  RECORD_MET = 3,
  RECORD_UTC = 4,
  RECORD_DURATION = 5,  ///< for comparisons and ToDouble: no definition names it, no file holds it
};

/// A named value of a record. `type` says which value field counts.
///
///     RECORD_ITEM item;
///     item.key_name = "x";
///     item.Parse("7.0123456789012345e+06");  // now RECORD_DOUBLE
///     const double x = item.ToDouble();
///
/// An operation throws the text "MDB: RECORD_ITEM: unknown type" for a type that it does not know,
/// and the comparisons throw it for two different types that are not both numbers.
struct RECORD_ITEM {
  STRING key_name;
  int type = 0;  ///< RECORD_ITEM_TYPE; 0: none yet
  MISSION_ELAPSED_TIME met;
  UNIVERSAL_TIME utc;
  DURATION duration;
  int integer = 0;
  double number = 0.0;

  /// Takes type and value from a text. Its characters determine the type: with ":" and "-" a
  /// universal time, with ":" alone a mission elapsed time, with "." a double, and an int
  /// otherwise. So a negative mission elapsed time fails as a universal time, and a double needs
  /// its point. Throws ERROR_DATA, after a line at ALARM, for a text that is not wholly a number
  /// of its type, and what the constructors of UNIVERSAL_TIME and MISSION_ELAPSED_TIME throw.
  void Parse(const char* text);
  /// The value as a record file shows it: an integer in decimal digits, a double with 16 digits
  /// after the point and a blank in place of a plus sign, a time as its text.
  STRING Text() const;
  /// A number as a double, a duration in seconds. Throws "can not cast from MET to double" and "can
  /// not cast from UTC to double".
  double ToDouble() const;
  /// Whether the value equals `other`.
  bool Equals(const RECORD_ITEM& other) const;
  /// Whether the value is at or after `wanted`; false for a NaN.
  bool IsAtOrAfter(const RECORD_ITEM& wanted) const;
  /// The value minus `origin`, in seconds for times and durations.
  long double DistanceFrom(const RECORD_ITEM& origin) const;
};

/// The type for a definition's word ("int", "double", "met", "utc"); 0 for any other text.
int RecordItemType(const STRING& word);

}  // namespace varnoth
