#pragma once

#include <list>

#include "foundation/array.hpp"
#include "system/static_object.hpp"
#include "time/utc_values.hpp"

namespace varnoth {

/// A row of the leap second table: the label of an inserted second and its size in seconds (kept
/// for the record; every row so far is 1).
struct LEAP_SECOND_ITEM : UTC_VALUES {
  int step = 0;
};

static_assert(sizeof(LEAP_SECOND_ITEM) == 36);

/// The table of the process: rows in order of time and a terminating row of year 0. It starts as
/// the built-in rows and stays so unless one of the operations below changes it, which no other
/// thread may be reading meanwhile.
struct LEAP_SECOND_TABLE {
  LEAP_SECOND_TABLE();
  ARRAY<LEAP_SECOND_ITEM> rows;
};

static const STATIC_OBJECT<LEAP_SECOND_TABLE> leap_second_table_user;

/// Whether a row of the table equals the time in all eight fields.
bool IsLeapSecond(const UTC_VALUES& time);

/// The number of rows strictly between two times, negative when `from` is the earlier one and
/// positive when it is the later one. It is what to add to a label that was moved from `from` to
/// `to` by days of 86400 s. A fraction is cut off at the later time, and the earlier one is taken
/// up to its next whole second. The result is logged unless the table's years are out of reach.
int LeapSecondsBetween(const UTC_VALUES& from, const UTC_VALUES& to);

/// The table becomes the built-in rows, or a table without leap seconds.
void ResetToDefaultTable();
void ResetToEmptyTable();
/// The table becomes a copy; throws the text "ARRAY : can not copy array" if there is no memory.
void ReplaceTable(const ARRAY<LEAP_SECOND_ITEM>& table);

/// Bring in rows behind the last one; what is not later than the table's last row is passed over.
void AppendFromArray(const ARRAY<LEAP_SECOND_ITEM>& items);
void AppendFromList(const std::list<LEAP_SECOND_ITEM>& items);
void AppendItem(const LEAP_SECOND_ITEM& item);

}  // namespace varnoth
