#include "records/mdb.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>

#include "foundation/errors.hpp"
#include "foundation/split.hpp"
#include "log/log.hpp"
#include "pool/join_key.hpp"
#include "pool/parameter_pool.hpp"
#include "records/place_words.hpp"

namespace varnoth {

namespace {

constexpr const char* CAN_NOT_WRITE = "can not write MDB_RECORD into mdb-file";

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
  for (const STRING& word : Split(text.c_str(), " \t")) result += word;
  return result;
}

[[noreturn]] void RefuseDefinition(const STRING& record_type, const STRING& definition) {
  GlobalLog.set(ALARM) << "MDB: record type " << record_type << ": >>" << definition
                       << "<< defines no item\n";
  throw "MDB: unknown type in record type definition";
}

/// The item of a definition such as "x : double", without a value.
RECORD_ITEM ItemOfDefinition(const STRING& record_type, const STRING& definition) {
  const ARRAY<STRING> words = Split(definition.c_str(), ":");
  const STRING* const word = words.begin();
  RECORD_ITEM item;
  if (words.GetLength() >= 2) {
    item.key_name = WithoutBlanks(word[0]);
    item.type = RecordItemType(WithoutBlanks(word[1]));
  }
  // An item without a name could not be read back.
  if (item.type == 0 || item.key_name.IsEmpty()) RefuseDefinition(record_type, definition);
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

  if (definitions.size() == 0) RefuseDefinition(path_info.file, "");
  const RECORD_ITEM new_key = ItemOfDefinition(path_info.file, *definitions.begin());
  ARRAY<RECORD_ITEM> new_items(0, definitions.GetLength() - 1);
  std::transform(definitions.begin() + 1, definitions.end(), new_items.begin(),
                 [this](const STRING& item) { return ItemOfDefinition(path_info.file, item); });
  SetRecord(new_items, new_key);
}

void MDB::SetRecord(const ARRAY<RECORD_ITEM>& record) {
  items = record;
  status.record_type_valid = true;
}

void MDB::SetRecord(const ARRAY<RECORD_ITEM>& record, const RECORD_ITEM& key_item) {
  RECORD_ITEM new_key = key_item;  // may refer to an item that SetRecord replaces
  SetRecord(record);
  std::swap(key, new_key);
}

const MDB_PATH_INFO& MDB::GetPathInfo() const {
  if (!status.path_set) throw "MDB::GetPathInfo(): no path was set before";
  return path_info;
}

void MDB::SetFile(const STRING& name) {
  Close();
  path_info.file = name;
  status.file_set = true;
  status.record_type_valid = false;
  ReadRecordType();
}

void MDB::SetPath(const STRING& root, int mission, int segment, int source, int first_take,
                  int second_take, int channel) {
  ChangePath({root, mission, segment, source, first_take, second_take, channel, path_info.file});
  ReadRecordType();
}

void MDB::SetPathAndFile(const STRING& root, int mission, int segment, int source, int first_take,
                         int second_take, int channel, const STRING& name) {
  ChangePath({root, mission, segment, source, first_take, second_take, channel, name});
  status.file_set = true;
  ReadRecordType();
}

void MDB::ChangePath(const MDB_PATH_INFO& path) {
  Close();
  path_info = path;
  status.path_set = true;
  status.record_type_valid = false;
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
  // With the std::ios::out added below, these would empty or create a file.
  if (!writing) mode &= ~(std::ios::trunc | std::ios::app);
  mode |= std::ios::in;
  stream.open(path.c_str(), mode | std::ios::out);
  // A missing file has no content to lose.
  if (!stream.is_open() && writing && errno == ENOENT) {
    stream.open(path.c_str(), mode | std::ios::trunc);
  }
  // Reading needs no permission to write. A directory would open for reading: don't try it.
  if (!stream.is_open() && !writing && errno != EISDIR) {
    stream.open(path.c_str(), mode);
  }
  status.stream_open = stream.is_open();
  if (!status.stream_open) {
    status.open_for_writing = false;
    throw "can not open mdb-file";
  }
}

void MDB::Close() {
  const bool written = status.open_for_writing;
  status.stream_open = status.open_for_writing = status.at_end = false;
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
  stream.GoTo(0);
}

void MDB::NeedStreamAndType(const char* no_file, const char* no_type) const {
  if (!status.stream_open) throw no_file;
  if (!status.record_type_valid) throw no_type;
}

const RECORD_ITEM& MDB::FindItem(const STRING& name) const {
  if (key.key_name == name) return key;
  for (const RECORD_ITEM& item : items) {
    if (item.key_name == name) return item;
  }
  throw "MDB: RECORD_ITEM: can not find key_name in record";
}

void MDB::Write() {
  NeedStreamAndType("MDB::Write(): no file open", "MDB::Write(): no valid record type");
  if (!status.open_for_writing) throw "MDB is opened read only: can not write data record";
  std::string text = std::string(key.key_name.c_str()) + " : " + key.Text().c_str() + "\n";
  for (const RECORD_ITEM& item : items) {
    std::string name = item.key_name.c_str();
    if (name_width > 0 && name.size() < static_cast<std::size_t>(name_width)) {
      name.resize(static_cast<std::size_t>(name_width), ' ');
    }
    text += "  " + name + " : " + item.Text().c_str() + "\n";
  }
  if (!status.at_end) {
    if (!stream.GoToEnd()) text.insert(0, "\n");
    status.at_end = true;
  }
  stream << text;
  if (!stream) throw CAN_NOT_WRITE;
}

bool MDB::ReadItem(RECORD_ITEM& item) {
  std::string name;
  std::string colon;
  std::string value;
  if (!(stream >> name >> colon >> value)) {
    if (stream.bad()) {
      // A failed read must not look like the end: the orbit would lack the samples after it.
      GlobalLog.set(ALARM) << "MDB::Read(): can not read file " << path_info.file << "\n";
      throw ERROR_CAN_NOT_READ_FILE();
    }
    if (!name.empty()) {
      GlobalLog.set(WARNING) << "MDB::Read(): file " << path_info.file << " ends within item "
                             << name << "\n";
    }
    return false;
  }
  // A null byte, such as a crash leaves in a file, would hide the text after it.
  const bool is_item = colon == ":" && (name + value).find('\0') == std::string::npos;
  try {
    if (!is_item) throw ERROR_DATA();
    item.key_name = name.c_str();
    item.Parse(value.c_str());
  } catch (...) {
    GlobalLog.set(ALARM) << "MDB::Read(): >>" << name << " " << colon << " " << value
                         << "<< is no item of file " << path_info.file << "\n";
    throw;
  }
  return true;
}

bool MDB::Read() {
  NeedStreamAndType("MDB::Read(): no file open", "MDB::Read(): no valid record type");
  status.at_end = false;
  RECORD_ITEM new_key;
  if (!ReadItem(new_key)) return false;
  ARRAY<RECORD_ITEM> new_items(items.GetFirstIndex(), items.GetLength());
  for (RECORD_ITEM& item : new_items) {
    if (!ReadItem(item)) {
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

}  // namespace varnoth
