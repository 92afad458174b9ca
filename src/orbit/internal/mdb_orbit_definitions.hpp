#pragma once

#include "foundation/errors.hpp"
#include "orbit/mdb_orbit.hpp"

namespace varnoth {

template <class T, class S, class I, class P>
ORBIT_BASE& MDB_ORBIT<T, S, I, P>::operator=(const ORBIT_BASE& source) {
  GlobalLog.set(DEBUG) << "virtual MDB_ORBIT<T,S,I,P>& operator=( const ORBIT_BASE& amdb_orbit )\n";
  ORBIT<T, S, I, P>::operator=(source);
  return *this;
}

template <class T, class S, class I, class P>
int MDB_ORBIT<T, S, I, P>::CountRecords() {
  int count = 0;
  while (Read()) ++count;
  Rewind();
  return count;
}

template <class T, class S, class I, class P>
S MDB_ORBIT<T, S, I, P>::EpochOf(const RECORD_ITEM& item) const {
  if constexpr (std::is_same_v<S, double>) {
    return item.ToDouble();
  } else if constexpr (std::is_same_v<S, UNIVERSAL_TIME>) {
    return item.utc;
  } else {
    return item.met;
  }
}

template <class T, class S, class I, class P>
void MDB_ORBIT<T, S, I, P>::read(const STRING& root_path, int mission, int tape, int source,
                                 int major, int minor, int channel, const STRING& file) {
  GlobalLog.set(INFO) << "mdb_orbit compiled without: TYPE_IS_STRING_VECTOR\n";
  SetPathAndFile(root_path, mission, tape, source, major, minor, channel, file);
  Open(std::ios::in);
  const int count = CountRecords();

  this->NewSamples(this->GetCoordinateCount());
  for (ARRAY<P>& series : this->samples) series.NeedRange(RANGE<int>(0, count));
  for (int k = 0; k < count; ++k) {
    if (!Read()) {
      GlobalLog.set(ALARM) << "ORBIT: mdb file was changed between open() and read()\n";
      throw ERROR_DATA();
    }
    const S epoch = EpochOf(FindItem(this->param_key));
    if (k == 0) this->StoreReferenceTime(epoch);
    const auto seconds = static_cast<T>(this->SecondsFromReference(epoch));
    const STRING* value_key = this->value_keys.begin();
    for (ARRAY<P>& series : this->samples) {
      const RECORD_ITEM& item = FindItem(*value_key++);
      series.begin()[k] = P(seconds, static_cast<T>(item.ToDouble()));
    }
  }
  this->Create();
  Close();
}

}  // namespace varnoth
