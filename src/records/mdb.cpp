#include "records/mdb.hpp"

#include <sys/stat.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <string>

#include "foundation/errors.hpp"
#include "foundation/split.hpp"
#include "framework/log/log.hpp"
#include "pool/join_key.hpp"
#include "pool/parameter_pool.hpp"
#include "records/place_words.hpp"

namespace varnoth {

namespace {

constexpr const char* CAN_NOT_WRITE = "can not write MDB_RECORD into mdb-file";
constexpr const char* NEAREST = "MDB::GotoRecord( mdb_stop_nearest ) : ";
constexpr const char* FAR_AWAY = "the value you searched for can be far away .. ";

/// A number in a directory's name, at least three digits.
std::string ThreeDigits(int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%3d", number);
  for (char& c : text) {
    if (c == ' ') c = '0';
  }
  return text;
}

STRING WithoutBlanks(const STRING& text) {
  STRING result;
  const ARRAY<STRING> words = Split(text.c_str(), " \t");
  for (int i = 0; i < words.GetLength(); ++i) result += words.GetElementBase(0)[i];
  return result;
}

/// The item of a definition such as "x : double", without a value.
RECORD_ITEM ItemOfDefinition(const STRING& definition) {
  const ARRAY<STRING> words = Split(definition.c_str(), ":");
  const STRING* const word = words.GetElementBase(0);
  RECORD_ITEM item;
  if (words.GetLength() >= 2) {
    item.key_name = WithoutBlanks(word[0]);
    item.type = RecordItemType(WithoutBlanks(word[1]));
  }
  if (item.type == 0) {
    GlobalLog.set(ALARM) << "MDB: >>" << definition << "<< defines no item\n";
    throw "MDB: unknown type in record type definition";
  }
  return item;
}

}  // namespace

MDB::~MDB() {
  try {
    MDB::Close();
  } catch (const char* text) {
    GlobalLog.set(ALARM) << text << "\n";
  }
}

void MDB::Reset() {
  Close();
  status = {};
  path_info = {};
  key = {};
  items.Delete();
}

void MDB::ReadRecordType() {
  if (!status.path_set || !status.file_set) return;
  CheckKeyLength(path_info.file.c_str());
  GlobalLog.set(INFO) << "mdb compiled with: TYPE_IS_STRING_VECTOR\n";
  PARAMETER_POOL pool((path_info.root + "/format.dat").c_str());
  ARRAY<STRING> definitions;
  pool.Read(path_info.file.c_str(), definitions);
  pool.close();

  const STRING* const definition = definitions.GetElementBase(0);
  const int count = definitions.GetLength();
  if (count == 0) throw "MDB: unknown type in record type definition";
  RECORD_ITEM new_key = ItemOfDefinition(definition[0]);
  ARRAY<RECORD_ITEM> new_items(0, count - 1);
  for (int i = 1; i < count; ++i) {
    new_items.GetElementBase(1)[i] = ItemOfDefinition(definition[i]);
  }
  SetRecord(new_items, new_key);
  status.record_valid = false;
}

void MDB::SetRecord(const ARRAY<RECORD_ITEM>& record) {
  items = record;
  status.record_valid = true;
  status.record_type_valid = true;
}

void MDB::SetRecord(const ARRAY<RECORD_ITEM>& record, const RECORD_ITEM& key_item) {
  SetRecord(record);
  key = key_item;
}

const MDB_PATH_INFO& MDB::GetPathInfo() const {
  if (!status.path_set) throw "MDB::GetPathInfo(): no path was set before";
  return path_info;
}

void MDB::SetFile(const STRING& name) {
  Close();
  path_info.file = name;
  status.file_set = true;
  status.record_valid = status.record_type_valid = false;
  ReadRecordType();
}

void MDB::SetPath(const STRING& root, int mission, int segment, int source, int first_take,
                  int second_take, int channel) {
  SetPathAndFile(root, mission, segment, source, first_take, second_take, channel, path_info.file);
}

void MDB::SetPathAndFile(const STRING& root, int mission, int segment, int source, int first_take,
                         int second_take, int channel, const STRING& name) {
  Close();
  path_info = {root, mission, segment, source, first_take, second_take, channel, name};
  status.path_set = true;
  SetFile(name);
}

STRING MDB::GetDirectory() const {
  const MDB_PATH_INFO& p = path_info;
  const std::string directory = std::string(p.root.c_str()) + "/" + MissionWord(p.mission) +
                                "/hddc_" + TapeSourceWord(p.source) + ThreeDigits(p.segment) +
                                "/dt_" + ThreeDigits(p.first_take) + "." +
                                ThreeDigits(p.second_take) + "/" + ChannelWord(p.channel);
  return directory.c_str();
}

void MDB::Open(std::ios::openmode mode) {
  if (!status.path_set) throw "MDB::Open(): no path selected";
  if (!status.file_set) throw "MDB::Open(): no file selected";
  Close();
  const bool writing = (mode & std::ios::out) != 0;
  if (writing) {
    status.open_for_writing = true;
    MakeDirectory();
  }
  const STRING path = GetDirectory() + "/" + path_info.file;
  GlobalLog.set(DEBUG) << "mdb file: " << path << "\n";
  if (writing && (mode & (std::ios::in | std::ios::app | std::ios::ate)) == 0) {
    mode |= std::ios::trunc;
  }
  stream.clear();
  stream.open(path.c_str(), mode | std::ios::in | std::ios::out);
  // Whoever only reads needs no permission to write.
  if (!stream.is_open() && !writing) stream.open(path.c_str(), std::ios::in);
  status.stream_open = stream.is_open();
  if (!status.stream_open) {
    status.open_for_writing = false;
    throw "can not open mdb-file";
  }
}

void MDB::Close() {
  const bool written = status.open_for_writing;
  status.stream_open = status.open_for_writing = false;
  if (!stream.is_open()) return;
  stream.clear();
  stream.close();
  if (written && stream.fail()) throw CAN_NOT_WRITE;
}

void MDB::MakeDirectory() {
  if (mkdir(GetDirectory().c_str(), 0755) != 0 && errno != EEXIST) {
    throw "MDB: can not create directory";
  }
}

void MDB::Rewind() {
  if (!status.stream_open) throw "MDB::Rewind(): no file open";
  if (status.open_for_writing) throw "MDB::Rewind(): is opened read only";
  stream.clear();
  stream.seekg(0);
}

void MDB::NeedStreamAndType(const char* no_file, const char* no_type) const {
  if (!status.stream_open) throw no_file;
  if (!status.record_type_valid) throw no_type;
}

const RECORD_ITEM& MDB::FindItem(const STRING& name) const {
  if (key.key_name == name) return key;
  const RECORD_ITEM* const item = items.GetElementBase(0);
  for (int i = 0; i < items.GetLength(); ++i) {
    if (item[i].key_name == name) return item[i];
  }
  throw "MDB: RECORD_ITEM: can not find key_name in record";
}

void MDB::Write() {
  NeedStreamAndType("MDB::Write(): no file open", "MDB::Write(): no valid record type");
  if (!status.open_for_writing) throw "MDB is opened read only: can not write data record";
  std::string text = std::string(key.key_name.c_str()) + " : " + key.Text().c_str() + "\n";
  for (int i = 0; i < items.GetLength(); ++i) {
    const RECORD_ITEM& item = items.GetElementBase(0)[i];
    std::string name = item.key_name.c_str();
    if (name_width > 0 && name.size() < static_cast<std::size_t>(name_width)) {
      name.resize(static_cast<std::size_t>(name_width), ' ');
    }
    text += "  " + name + " : " + item.Text().c_str() + "\n";
  }
  stream << text;
  if (!stream) throw CAN_NOT_WRITE;
}

bool MDB::ReadItem(RECORD_ITEM& item) {
  std::string name;
  std::string colon;
  std::string value;
  if (!(stream >> name >> colon >> value)) {
    if (!name.empty()) {
      GlobalLog.set(WARNING) << "MDB::Read(): file " << path_info.file << " ends within item "
                             << name << "\n";
    }
    return false;
  }
  if (colon != ":") {
    GlobalLog.set(ALARM) << "MDB::Read(): >>" << name << " " << colon << " " << value
                         << "<< is no item of file " << path_info.file << "\n";
    throw ERROR_DATA();
  }
  item.key_name = name.c_str();
  item.Parse(value.c_str());
  return true;
}

bool MDB::Read() {
  NeedStreamAndType("MDB::Read(): no file open", "MDB::Read(): no valid record type");
  RECORD_ITEM new_key;
  if (!ReadItem(new_key)) return false;
  ARRAY<RECORD_ITEM> new_items(items.GetFirstIndex(), items.GetLength());
  for (int i = 0; i < new_items.GetLength(); ++i) {
    if (!ReadItem(new_items.GetElementBase(0)[i])) {
      GlobalLog.set(WARNING) << "MDB::Read(): file " << path_info.file << " ends within record "
                             << new_key.Text() << "\n";
      return false;
    }
  }
  SetRecord(new_items, new_key);
  return true;
}

bool MDB::ReadStep(int lines) {
  NeedStreamAndType("MDB::Read(): no file open", "MDB::Read(): no valid record type");
  if (lines < 0 && !stream.StepBack(lines)) return false;
  if (lines > 0 && !stream.StepForward(lines)) return false;
  return Read();
}

void MDB::ReadBack(int lines, const char* missing) {
  if (!ReadStep(-lines)) throw missing;
}

void MDB::ChooseNearest(const RECORD_ITEM& search_item) {
  const long double distance = FindItem(search_item.key_name).DistanceFrom(search_item);
  // From the last line of this record to the first one of its predecessor.
  if (!ReadStep(1 - 2 * LinesOfRecord())) {
    GlobalLog.set(WARNING) << NEAREST << FAR_AWAY << "we are at the beginning of the data file "
                           << "therefore I give you the first record "
                           << "(its really the nearest!)\n";
    return;
  }
  const long double former = FindItem(search_item.key_name).DistanceFrom(search_item);
  if (!std::isgreater(std::fabs(distance), std::fabs(former))) Read();
}

void MDB::GotoRecord(const RECORD_ITEM& search_item, MDB_STOP stop) {
  NeedStreamAndType("MDB::GotoRecord(): no file open", "MDB::GotoRecord(): no valid record type");
  if (status.open_for_writing) throw "MDB::GotoRecord(): is opened read only";
  if (stop < mdb_stop_before || stop > mdb_stop_after) throw ERROR_UNHANDLED_CASE();

  Rewind();
  std::streamoff next_start = 0;
  std::streamoff last_start = -1;
  while (Read()) {
    last_start = next_start;
    next_start = stream.Position();
    const RECORD_ITEM& item = FindItem(search_item.key_name);
    if (!item.IsAtOrAfter(search_item)) continue;
    switch (stop) {
      case mdb_stop_before:
        ReadBack(2 * LinesOfRecord() - 1,
                 "MDB::GotoRecord( mdb_stop_before ) : you want me to give you the record before "
                 "the first one");
        return;
      case mdb_stop_exact:
        if (!item.Equals(search_item)) {
          throw "MDB::GotoRecord( mdb_stop_exact ) : search_value not found";
        }
        return;
      case mdb_stop_nearest:
        ChooseNearest(search_item);
        return;
      default:
        if (!Read()) {
          throw "MDB::GotoRecord( mdb_stop_after ) : you want me to give you the record after the "
                "last one";
        }
        return;
    }
  }
  if (stop != mdb_stop_nearest || last_start < 0) throw "search_value not found";
  GlobalLog.set(WARNING) << NEAREST << FAR_AWAY << "we reached the end of the data file "
                         << "therefore I give you the last record "
                         << "(its really the nearest!) \n";
  stream.seekg(last_start);
  Read();
}

}  // namespace varnoth
