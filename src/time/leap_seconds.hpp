#pragma once

#include <list>

#include "foundation/array.hpp"
#include "system/static_object.hpp"
#include "time/utc_values.hpp"

namespace varnoth {

/// A row of the leap second table: the label of an inserted second and its size in seconds. The
/// size is 1 in every row and enters no calculation.
struct LEAP_SECOND_ITEM : UTC_VALUES {
  int step = 0;
};

static_assert(sizeof(LEAP_SECOND_ITEM) == 36);

/// The table of the process: rows in order of time and a terminating row of year 0. It starts with
/// the built-in rows; the operations below change it. No other thread may read it during a change.
///
///     AppendItem({{2016, 12, 31, 23, 59, 60, 0, 0}, 1});
///     const bool is_listed = IsLeapSecond({2016, 12, 31, 23, 59, 60, 0, 0});  // true
///
/// The operations that change the table throw the text "ARRAY : can not copy array" if there is no
/// memory; the table then stays as it was.
struct LEAP_SECOND_TABLE {
  LEAP_SECOND_TABLE();
  ARRAY<LEAP_SECOND_ITEM> rows;
};

static const STATIC_OBJECT<LEAP_SECOND_TABLE> leap_second_table_user;

/// Whether a row of the table equals the time in all eight fields.
bool IsLeapSecond(const UTC_VALUES& time);

/// The number of rows strictly between two times: negative if `from` is the earlier one, positive
/// if it is the later one. Add these seconds to a label that was moved from `from` to `to` by days
/// of 86400 s. The later time loses its fraction; the earlier one moves up to its next whole
/// second. Writes the result as a line at TRACE, unless both years lie before or after those of the
/// table.
int LeapSecondsBetween(const UTC_VALUES& from, const UTC_VALUES& to);

/// Sets the table to the built-in rows.
void ResetToDefaultTable();
/// Sets the table to one without leap seconds.
void ResetToEmptyTable();
/// Sets the table to a copy of `table`, whose rows must be in order of time. A row of year 0 ends
/// it.
void ReplaceTable(const ARRAY<LEAP_SECOND_ITEM>& table);

/// Add rows after the last one; skip rows that are not later than the table's last one, and rows of
/// year 0.
void AppendFromArray(const ARRAY<LEAP_SECOND_ITEM>& items);
void AppendFromList(const std::list<LEAP_SECOND_ITEM>& items);
void AppendItem(const LEAP_SECOND_ITEM& item);

}  // namespace varnoth
