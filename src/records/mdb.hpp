#pragma once

#include <ios>

#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "records/line_stream.hpp"
#include "records/record_item.hpp"

namespace varnoth {

/// The place of a record file: <root>/<mission word>/hddc_<source word><segment>/dt_<first
/// take>.<second take>/<channel word>/<file>. Segment and takes have three digits or more;
/// place_words.hpp has the words.
struct MDB_PATH_INFO {
  STRING root;
  int mission = 0;
  int segment = 0;
  int source = 0;
  int first_take = 0;
  int second_take = 0;
  int channel = 0;
  STRING file;
};

/// Which record a search reads, seen from the first record at or after the wanted value.
enum MDB_STOP : int {
  mdb_stop_invalid = 0,
  mdb_stop_before = 1,   ///< the record in front of it
  mdb_stop_exact = 2,    ///< that record, if it has the wanted value
  mdb_stop_nearest = 3,  ///< it or the one in front, whichever is nearer; in a tie it
  mdb_stop_after = 4,    ///< the record after it
};

/// A record file: a time-ordered series of typed records in a text file.
///
///     MDB orbit;
///     orbit.SetPathAndFile("records", 4, 12, 3, 5, 7, 1, "orbit.mdb");
///     orbit.Open(std::ios::in);
///     while (orbit.Read()) std::printf("%g\n", orbit.FindItem("x").ToDouble());
///
/// A record is a line for its key item and an indented line for every further item,
///
///     t : 06-APR-2025/02:19:03.324203
///       x :  7.0123456789012345e+06
///
/// The parameter pool "format.dat" in the root gives the record type, an STR_V under the data
/// file's name as key: a list of texts such as "x : double", the key item first. The types are int,
/// double, met (mission elapsed time) and utc.
///
/// All failures throw texts, except those of the pool, the time scanners and the memory, and those
/// that an operation names.
class MDB {
 public:
  MDB() = default;
  MDB(const MDB&) = delete;
  MDB& operator=(const MDB&) = delete;
  /// Closes; a failure is a line at ALARM.
  virtual ~MDB();

  /// Closes and forgets path, file, record type and record, but not the printed width of names.
  virtual void Reset();
  /// Reads the record type from "format.dat"; does nothing without a path or a file name. Throws
  /// what the pool throws, PARAMETER_KEY_TOO_LONG for a file name of more than 100 characters, and
  /// "MDB: unknown type in record type definition" after a line at ALARM. Creates a missing
  /// "format.dat" empty, and then throws PARAMETER_KEY_NOT_FOUND.
  virtual void ReadRecordType();
  /// Set the record that `Write` writes next: the further items and, in the second form, the key
  /// item. They replace the record type too.
  virtual void SetRecord(const ARRAY<RECORD_ITEM>& record);
  virtual void SetRecord(const ARRAY<RECORD_ITEM>& record, const RECORD_ITEM& key_item);
  /// Throws "MDB::GetPathInfo(): no path was set before".
  virtual const MDB_PATH_INFO& GetPathInfo() const;
  /// Choose the file; mission, source and channel are numbers of place_words.hpp. Each closes an
  /// open file and, once path and file name are known, reads the record type.
  virtual void SetFile(const STRING& name);
  virtual void SetPath(const STRING& root, int mission, int segment, int source, int first_take,
                       int second_take, int channel);
  virtual void SetPathAndFile(const STRING& root, int mission, int segment, int source,
                              int first_take, int second_take, int channel, const STRING& name);
  /// Closes an open file and opens the chosen one. A mode with std::ios::out opens it for writing
  /// too, makes the last level of the directory and creates a missing file; the content stays
  /// unless the mode has std::ios::trunc. Any other mode opens the file for reading and never
  /// changes it. Throws "MDB::Open(): no path selected", "MDB::Open(): no file selected", "can not
  /// open mdb-file", and what `Close` and `MakeDirectory` throw.
  virtual void Open(std::ios::openmode mode);
  /// Throws "can not write MDB_RECORD into mdb-file" if a written record did not reach the file.
  virtual void Close();
  /// Makes the last level of the directory, with mode 0755; an existing one is fine. Throws "MDB:
  /// can not create directory".
  virtual void MakeDirectory();
  /// Goes to the first record. Throws a text if no file is open or if the file is open for writing.
  virtual void Rewind();
  /// Reads from the first record on up to the first one whose item of the name of `search_item` is
  /// at or after its value, and then reads the record that `stop` names; `Read` continues after
  /// that one. The item must ascend from record to record. With mdb_stop_nearest, a value at or in
  /// front of the first record gives that one, and a value after all records the last one, each
  /// with a line at WARNING.
  ///
  /// Throws texts if no file is open, if it is open for writing, without a record type, if there is
  /// no such record or item, and if the item has another type (int and double compare with each
  /// other). Throws ERROR_UNHANDLED_CASE for any other `stop`, ERROR_DATA, after a line at ALARM,
  /// if the file changed during the search, and what `Read` throws. After a failure the last record
  /// read is the current one.
  virtual void GotoRecord(const RECORD_ITEM& search_item, MDB_STOP stop);
  /// Writes the record after the last one of the file, wherever reading stands. Throws texts if no
  /// file is open, if it is open for reading alone, without a record type, for an item without a
  /// type that a file can hold, and if the stream fails.
  virtual void Write();
  /// Reads the next record: as many items as the record type has. Their names and types are those
  /// of the file; nothing checks them against the record type. False at the end of the file; the
  /// record then stays as it was, and an end within a record is a line at WARNING. Throws texts if
  /// no file is open, and without a record type. Throws, after a line at ALARM, ERROR_DATA for
  /// lines that are no items, what RECORD_ITEM::Parse throws, and ERROR_CAN_NOT_READ_FILE if the
  /// file can't be read.
  virtual bool Read();
  /// Steps `lines` lines forward, or back if negative, and reads the record there. Blank lines
  /// count. False, with the position as it was, if the file has fewer lines, and as `Read` at
  /// its end.
  virtual bool ReadStep(int lines);

  const RECORD_ITEM& GetKeyItem() const { return key; }
  const ARRAY<RECORD_ITEM>& GetRecord() const { return items; }
  /// The record's item of a name; throws "MDB: RECORD_ITEM: can not find key_name in record".
  const RECORD_ITEM& FindItem(const STRING& name) const;
  /// The width in bytes to which `Write` pads the names of further items; -1: no padding.
  void SetNameWidth(int width) { name_width = width; }
  /// The directory of the chosen path, without a slash at its end.
  STRING GetDirectory() const;

 private:
  struct STATUS {
    bool path_set = false;
    bool file_set = false;
    bool stream_open = false;
    bool open_for_writing = false;
    bool record_type_valid = false;
    bool at_end = false;  ///< the stream is at the end of the last record that was written
  };

  void NeedStreamAndType(const char* no_file, const char* no_type) const;
  bool ReadItem(RECORD_ITEM& item);
  void ChangePath(const MDB_PATH_INFO& path);
  /// Reads the record that an earlier read found at a place.
  void ReadAgain(std::streamoff start);
  /// Reads the nearer one of the last record and its predecessor, given their places (-1: none).
  void ChooseNearest(const RECORD_ITEM& wanted, std::streamoff start, std::streamoff former_start);

  LINE_STREAM stream;
  MDB_PATH_INFO path_info;
  STATUS status;
  RECORD_ITEM key;
  ARRAY<RECORD_ITEM> items;
  int name_width = -1;
};

}  // namespace varnoth
