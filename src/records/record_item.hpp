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
  RECORD_DURATION = 5,  ///< known to comparison alone: no definition names it, no file holds it
};

/// A named value of a record. Of the value fields the one of the type counts.
///
/// An operation throws the text "MDB: RECORD_ITEM: unknown type" for a type that it does not know.
struct RECORD_ITEM {
  STRING key_name;
  int type = 0;  ///< RECORD_ITEM_TYPE; 0: none yet
  MISSION_ELAPSED_TIME met;
  UNIVERSAL_TIME utc;
  DURATION duration;
  int integer = 0;
  double number = 0.0;

  /// Takes the value of a text, whose characters settle the type: a time with ":" and "-" is a
  /// universal time and with ":" alone a mission elapsed time, a number with "." is floating and
  /// any other an integer. A negative mission elapsed time thus fails as a universal one. Throws
  /// ERROR_DATA, behind a line at ALARM, for a text that is no number of its type, and what the
  /// time scanners throw.
  void Parse(const char* text);
  /// The value as a record file shows it: an integer as decimal digits, a floating number with 16
  /// digits behind the point and a blank where a minus would stand, a time as its text.
  STRING Text() const;
  /// The value as a floating number; a duration in seconds. Throws "can not cast from MET to
  /// double" and "can not cast from UTC to double".
  double ToDouble() const;
  /// Whether the value equals another one of the same type; numbers compare across their types.
  bool Equals(const RECORD_ITEM& other) const;
  /// Whether the value is at or behind `wanted`.
  bool IsAtOrAfter(const RECORD_ITEM& wanted) const;
  /// Distance from `origin` to the value, in seconds for times.
  long double DistanceFrom(const RECORD_ITEM& origin) const;
};

/// The type of a definition's word ("int", "double", "met", "utc"), or 0.
int RecordItemType(const STRING& word);

}  // namespace varnoth
