#include "framework/software_log.hpp"

#include <algorithm>

#include "pool/join_key.hpp"

namespace varnoth {

namespace {

/// Key of a column; no prefix stands ahead of the software keys of a log pool.
STRING ColumnKey(const char* column) { return join_key({"", "software", column}); }

}  // namespace

int SoftwareLog::RowOf(const STRING& name) const {
  const STRING* const rows = names.GetElementBase(0);
  return static_cast<int>(std::find(rows, rows + names.GetLength(), name) - rows);
}

void SoftwareLog::Resize(int rows) {
  for (VECTOR<STRING>* column : {&names, &versions, &dates, &start_times, &end_times}) {
    if (column->ARRAY<STRING>::Resize(RANGE<int>(column->GetFirstIndex(), rows)) != ARRAY_OK) {
      throw ERROR_NO_MEMORY();
    }
  }
  const int held = std::min(execution_times.GetLength(), rows);
  if (execution_times.Resize(RANGE<int>(execution_times.GetFirstIndex(), rows)) != ARRAY_OK) {
    throw ERROR_NO_MEMORY();
  }
  std::fill(execution_times.GetElementBase(0) + held, execution_times.GetElementBase(0) + rows, 0);
}

void SoftwareLog::add(const SoftwareIdentity& identity) {
  const int row = RowOf(identity.name);
  Resize(std::max(names.GetLength(), row + 1));
  names.GetElementBase(0)[row] = identity.name;
  versions.GetElementBase(0)[row] = identity.version;
  dates.GetElementBase(0)[row] = identity.date;
  start_times.GetElementBase(0)[row] = identity.start_time;
  end_times.GetElementBase(0)[row] = identity.end_time;
  execution_times.GetElementBase(0)[row] = static_cast<int>(identity.execution_seconds);
}

void SoftwareLog::update_pool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, SoftwareIdentity& identity) {
  if (pool.find_key(ColumnKey("names").c_str())) {
    pool.Read(ColumnKey("names").c_str(), names);
    pool.Read(ColumnKey("versions").c_str(), versions);
    pool.Read(ColumnKey("dates").c_str(), dates);
    pool.Read(ColumnKey("start_times").c_str(), start_times);
    pool.Read(ColumnKey("end_times").c_str(), end_times);
    pool.Read(ColumnKey("execution_times").c_str(), execution_times);
  } else {
    *this = SoftwareLog();
  }
  identity.TakeEnd();
  add(identity);
  pool.Change(ColumnKey("names").c_str(), names);
  pool.Change(ColumnKey("versions").c_str(), versions);
  pool.Change(ColumnKey("dates").c_str(), dates);
  pool.Change(ColumnKey("execution_times").c_str(), execution_times);
  pool.Change(ColumnKey("start_times").c_str(), start_times);
  pool.Change(ColumnKey("end_times").c_str(), end_times);

  constexpr const char* QA_KEY = "QA_WARNING_FLAG";
  const bool seen = GlobalLog.qa_warning_seen();
  if (seen || !pool.find_key(QA_KEY)) pool.Change(QA_KEY, seen);
}

}  // namespace varnoth
