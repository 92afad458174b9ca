#include "time/leap_seconds.hpp"

#include <algorithm>
#include <span>

#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr LEAP_SECOND_ITEM Inserted(int year, int month, int day) {
  return {{year, month, day, 23, 59, 60, 0, 0}, 1};
}

constexpr LEAP_SECOND_ITEM TERMINATOR{{0, 0, 0, 0, 0, 0, 0, 0}, 1};

// Leap seconds as announced by the Earth rotation service up to 2015. The last two rows have the
// day 31 June on purpose: they count from the end of 1 July on, and no date equals them. Add a new
// row in front of the terminator.
constexpr LEAP_SECOND_ITEM BUILT_IN_ROWS[] = {
    Inserted(1972, 6, 30),  Inserted(1972, 12, 31), Inserted(1973, 12, 31),
    Inserted(1974, 12, 31), Inserted(1975, 12, 31), Inserted(1976, 12, 31),
    Inserted(1977, 12, 31), Inserted(1978, 12, 31), Inserted(1979, 12, 31),
    Inserted(1981, 6, 30),  Inserted(1982, 6, 30),  Inserted(1983, 6, 30),
    Inserted(1985, 6, 30),  Inserted(1987, 12, 31), Inserted(1989, 12, 31),
    Inserted(1990, 12, 31), Inserted(1992, 6, 30),  Inserted(1993, 6, 30),
    Inserted(1994, 6, 30),  Inserted(1995, 12, 31), Inserted(1997, 6, 30),
    Inserted(1998, 12, 31), Inserted(2005, 12, 31), Inserted(2008, 12, 31),
    Inserted(2012, 6, 31),  Inserted(2015, 6, 31),  TERMINATOR};

using ROWS = std::span<const LEAP_SECOND_ITEM>;

ARRAY<LEAP_SECOND_ITEM>& Table() { return STATIC_OBJECT<LEAP_SECOND_TABLE>::Get().rows; }

// The rows before the terminating one; a table without a terminator counts whole.
ROWS RealRows() {
  const ARRAY<LEAP_SECOND_ITEM>& table = Table();
  const LEAP_SECOND_ITEM* const end =
      std::find_if(table.begin(), table.end(), [](const auto& row) { return row.year == 0; });
  return {table.begin(), static_cast<std::size_t>(end - table.begin())};
}

void SetRows(ARRAY<LEAP_SECOND_ITEM>& table, ROWS rows) {
  ARRAY<LEAP_SECOND_ITEM> fresh(0, static_cast<int>(rows.size()));
  std::copy(rows.begin(), rows.end(), fresh.begin());
  table = fresh;
}

bool HasFraction(const UTC_VALUES& time) { return time.millisecond > 0 || time.microsecond >= 1; }

void CutFraction(UTC_VALUES& time) { time.millisecond = time.microsecond = 0; }

}  // namespace

LEAP_SECOND_TABLE::LEAP_SECOND_TABLE() { SetRows(rows, BUILT_IN_ROWS); }

bool IsLeapSecond(const UTC_VALUES& time) {
  const ROWS rows = RealRows();
  return std::any_of(rows.begin(), rows.end(), [&](const UTC_VALUES& row) { return row == time; });
}

int LeapSecondsBetween(const UTC_VALUES& from, const UTC_VALUES& to) {
  if (IsEarlier(to, from)) return -LeapSecondsBetween(to, from);
  UTC_VALUES a = from;
  UTC_VALUES b = to;
  if (HasFraction(a)) {
    CutFraction(a);
    a.AddSeconds(1, LEAP::OBSERVED);
  }
  if (HasFraction(b)) CutFraction(b);

  const ROWS rows = RealRows();
  if (rows.empty() || rows.front().year > std::max(a.year, b.year) ||
      rows.back().year < std::min(a.year, b.year)) {
    return 0;
  }
  const auto passed = std::count_if(rows.begin(), rows.end(), [&](const UTC_VALUES& row) {
    return IsEarlier(a, row) && IsEarlier(row, b);
  });
  const int result = -static_cast<int>(passed);
  GlobalLog.set(TRACE) << "leap secs = " << result << "\n";
  return result;
}

void ResetToDefaultTable() { SetRows(Table(), BUILT_IN_ROWS); }

void ResetToEmptyTable() { SetRows(Table(), {&TERMINATOR, 1}); }

void ReplaceTable(const ARRAY<LEAP_SECOND_ITEM>& table) { Table() = table; }

void AppendFromArray(const ARRAY<LEAP_SECOND_ITEM>& items) {
  for (const LEAP_SECOND_ITEM& item : items) AppendItem(item);
}

void AppendFromList(const std::list<LEAP_SECOND_ITEM>& items) {
  for (const LEAP_SECOND_ITEM& item : items) AppendItem(item);
}

void AppendItem(const LEAP_SECOND_ITEM& item) {
  const ROWS rows = RealRows();
  if (item.year == 0 || !IsEarlier(rows.empty() ? TERMINATOR : rows.back(), item)) return;
  const auto count = static_cast<int>(rows.size());
  ARRAY<LEAP_SECOND_ITEM> longer(0, count + 2);
  LEAP_SECOND_ITEM* end = std::copy(rows.begin(), rows.end(), longer.begin());
  *end++ = item;
  *end = TERMINATOR;
  Table() = longer;
}

}  // namespace varnoth
