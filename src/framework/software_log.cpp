#include "framework/software_log.hpp"

#include <algorithm>

#include "pool/join_key.hpp"

namespace varnoth {

namespace {

/// A column of the table, in the order of a log pool. The column without texts is
/// `execution_times`.
struct COLUMN {
  const char* name;
  VECTOR<STRING> SoftwareLog::*texts = nullptr;
  STRING SoftwareIdentity::*text_of_run = nullptr;
};
constexpr COLUMN COLUMNS[] = {
    {"names", &SoftwareLog::names, &SoftwareIdentity::name},
    {"versions", &SoftwareLog::versions, &SoftwareIdentity::version},
    {"dates", &SoftwareLog::dates, &SoftwareIdentity::date},
    {"execution_times"},
    {"start_times", &SoftwareLog::start_times, &SoftwareIdentity::start_time},
    {"end_times", &SoftwareLog::end_times, &SoftwareIdentity::end_time},
};

/// Key of a column; the software keys of a log pool have no prefix.
STRING ColumnKey(const char* column) { return join_key({"", "software", column}); }

}  // namespace

int SoftwareLog::RowOf(const STRING& name) const {
  return static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
}

void SoftwareLog::Resize(int rows) {
  for (const COLUMN& column : COLUMNS) {
    if (column.texts == nullptr) continue;
    ARRAY<STRING>& texts = this->*column.texts;
    texts.NeedRange(RANGE<int>(texts.GetFirstIndex(), rows));
  }
  const int held = std::min(execution_times.GetLength(), rows);
  execution_times.NeedRange(RANGE<int>(execution_times.GetFirstIndex(), rows));
  std::fill(execution_times.begin() + held, execution_times.end(), 0);
}

void SoftwareLog::add(const SoftwareIdentity& identity) {
  const int row = RowOf(identity.name);
  Resize(std::max(names.GetLength(), row + 1));
  for (const COLUMN& column : COLUMNS) {
    if (column.texts != nullptr) {
      (this->*column.texts).begin()[row] = identity.*column.text_of_run;
    }
  }
  execution_times.begin()[row] = static_cast<int>(identity.execution_seconds);
}

void SoftwareLog::update_pool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, SoftwareIdentity& identity) {
  pool.Lock();  // so that no other step changes the rows between reading and writing
  if (pool.find_key(ColumnKey("names").c_str())) {
    for (const COLUMN& column : COLUMNS) {
      if (column.texts != nullptr) {
        pool.Read(ColumnKey(column.name).c_str(), this->*column.texts);
      }
    }
    pool.Read(ColumnKey("execution_times").c_str(), execution_times);
  } else {
    *this = SoftwareLog();
  }
  identity.StampEnd();
  add(identity);
  for (const COLUMN& column : COLUMNS) {
    const STRING key = ColumnKey(column.name);
    if (column.texts != nullptr) {
      pool.Change(key.c_str(), this->*column.texts);
    } else {
      pool.Change(key.c_str(), execution_times);
    }
  }

  constexpr const char* QA_KEY = "QA_WARNING_FLAG";
  const bool seen = GlobalLog.qa_warning_seen();
  if (seen || !pool.find_key(QA_KEY)) pool.Change(QA_KEY, seen);
}

}  // namespace varnoth
