#include <cmath>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "records/mdb.hpp"

namespace varnoth {

namespace {

constexpr const char* NEAREST = "MDB::GotoRecord( mdb_stop_nearest ) : ";
constexpr const char* FAR_AWAY = "the value you searched for can be far away .. ";

}  // namespace

void MDB::ReadAgain(std::streamoff start) {
  if (stream.GoTo(start) && Read()) return;
  GlobalLog.set(ALARM) << "MDB::GotoRecord(): file " << path_info.file
                       << " was changed during the search\n";
  throw ERROR_DATA();
}

void MDB::ChooseNearest(const RECORD_ITEM& wanted, std::streamoff start,
                        std::streamoff former_start) {
  if (former_start < 0) {
    GlobalLog.set(WARNING) << NEAREST << FAR_AWAY << "we are at the beginning of the data file "
                           << "therefore I give you the first record "
                           << "(its really the nearest!)\n";
    return;
  }
  const long double distance = FindItem(wanted.key_name).DistanceFrom(wanted);
  ReadAgain(former_start);
  const long double former = FindItem(wanted.key_name).DistanceFrom(wanted);
  if (!std::isgreater(std::fabs(distance), std::fabs(former))) ReadAgain(start);
}

void MDB::GotoRecord(const RECORD_ITEM& search_item, MDB_STOP stop) {
  NeedStreamAndType("MDB::GotoRecord(): no file open", "MDB::GotoRecord(): no valid record type");
  if (status.open_for_writing) throw "MDB::GotoRecord(): is opened read only";
  if (stop < mdb_stop_before || stop > mdb_stop_after) throw ERROR_UNHANDLED_CASE();

  const RECORD_ITEM wanted = search_item;  // may refer to an item that Read replaces
  Rewind();
  // Starts of the last record read and of the one in front. Unlike a count of lines, they are right
  // even if the file has blank lines.
  std::streamoff start = -1;
  std::streamoff former_start = -1;
  for (std::streamoff next = 0; Read(); next = stream.Position()) {
    former_start = start;
    start = next;
    const RECORD_ITEM& item = FindItem(wanted.key_name);
    if (!item.IsAtOrAfter(wanted)) continue;
    switch (stop) {
      case mdb_stop_before:
        if (former_start < 0) {
          throw "MDB::GotoRecord( mdb_stop_before ) : you want me to give you the record before "
                "the first one";
        }
        ReadAgain(former_start);
        return;
      case mdb_stop_exact:
        if (!item.Equals(wanted)) {
          throw "MDB::GotoRecord( mdb_stop_exact ) : search_value not found";
        }
        return;
      case mdb_stop_nearest:
        ChooseNearest(wanted, start, former_start);
        return;
      default:
        if (!Read()) {
          throw "MDB::GotoRecord( mdb_stop_after ) : you want me to give you the record after the "
                "last one";
        }
        return;
    }
  }
  if (stop != mdb_stop_nearest || start < 0) throw "search_value not found";
  GlobalLog.set(WARNING) << NEAREST << FAR_AWAY << "we reached the end of the data file "
                         << "therefore I give you the last record "
                         << "(its really the nearest!) \n";
  // Go back to the end of the last whole record: part of another one may follow it.
  ReadAgain(start);
}

}  // namespace varnoth
