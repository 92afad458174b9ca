#pragma once

#include <ios>

#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "records/line_stream.hpp"
#include "records/record_item.hpp"

namespace varnoth {

/// Where a record file lies: <root>/<mission word>/hddc_<source word><segment>/dt_<first
/// take>.<second take>/<channel word>/<file>. The three plain numbers have three digits or more.
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

/// Where a search stops, seen from the first record at or behind the wanted value.
enum MDB_STOP : int {
  mdb_stop_invalid = 0,
  mdb_stop_before = 1,   ///< the record ahead of it
  mdb_stop_exact = 2,    ///< the record, if it has just that value
  mdb_stop_nearest = 3,  ///< it or the one ahead of it, the later one at the same distance
  mdb_stop_after = 4,    ///< the record behind it
};

/// A record file: a time-ordered series of typed records in a text file. A record is a line for its
/// key item and an indented line for every further item,
///
///     t : 06-APR-2025/02:19:03.324203
///       x :  7.0123456789012345e+06
///
/// Which items a record has stands in the parameter pool "format.dat" in the root, under the data
/// file's name as key: a list of texts such as "x : double", the key item first. The types are int,
/// double, met (mission elapsed time) and utc.
///
/// All failures are thrown as texts, but for those of the pool, the time scanners, the memory and
/// what is told at an operation.
class MDB {
 public:
  MDB() = default;
  MDB(const MDB&) = delete;
  MDB& operator=(const MDB&) = delete;
  /// Closes.
  virtual ~MDB();

  /// Closes and forgets path, file, record type and record. The printed width of names stays.
  virtual void Reset();
  /// Reads the record type from "format.dat"; nothing without path or file. Throws what the pool
  /// throws, PARAMETER_KEY_TOO_LONG for a file name of more than 100 characters, and "MDB: unknown
  /// type in record type definition".
  virtual void ReadRecordType();
  /// Takes over the values of the next record to be written: the further items, and the key item.
  /// They settle the record type too.
  virtual void SetRecord(const ARRAY<RECORD_ITEM>& record);
  virtual void SetRecord(const ARRAY<RECORD_ITEM>& record, const RECORD_ITEM& key_item);
  /// Throws a text if no path was set.
  virtual const MDB_PATH_INFO& GetPathInfo() const;
  /// Choose the file. Each closes what is open and, once there are path and file, reads the record
  /// type.
  virtual void SetFile(const STRING& name);
  virtual void SetPath(const STRING& root, int mission, int segment, int source, int first_take,
                       int second_take, int channel);
  virtual void SetPathAndFile(const STRING& root, int mission, int segment, int source,
                              int first_take, int second_take, int channel, const STRING& name);
  /// Opens the file, for writing too if the mode has std::ios::out, which also makes the last level
  /// of the directory. Of a mode with out alone the file starts empty, as a stream's would. Without
  /// out the file stays as it is. Throws texts for a path, file, directory or stream that is
  /// missing.
  virtual void Open(std::ios::openmode mode);
  /// Throws "can not write MDB_RECORD into mdb-file" if what was written did not reach the file.
  virtual void Close();
  virtual void MakeDirectory();
  /// Goes to the first record.
  virtual void Rewind();
  /// Finds the record whose item of the name, and type, of `search_item` has its value, and reads
  /// the one that `stop` tells. Next to be read is then the one behind it. Throws a text where
  /// there is no such record, ERROR_UNHANDLED_CASE for a mode that is none, and what Read throws.
  virtual void GotoRecord(const RECORD_ITEM& search_item, MDB_STOP stop);
  /// Writes the record behind the last one of the file, whatever was read in between. Throws texts
  /// without file, type or permission and for what the file does not take.
  virtual void Write();
  /// Reads the next record. False at the end of the file, also within a record, which is told at
  /// WARNING; the record then stays as it was. Throws, behind a line at ALARM, ERROR_DATA for lines
  /// that are no items, and ERROR_CAN_NOT_READ_FILE for a file that can't be read.
  virtual bool Read();
  /// The same after going forward by `lines` lines, or back if negative.
  virtual bool ReadStep(int lines);

  const RECORD_ITEM& GetKeyItem() const { return key; }
  const ARRAY<RECORD_ITEM>& GetRecord() const { return items; }
  /// The record's item of a name; throws "MDB: RECORD_ITEM: can not find key_name in record".
  const RECORD_ITEM& FindItem(const STRING& name) const;
  /// Pads the further items' names to a width in what is written; -1: not at all.
  void SetNameWidth(int width) { name_width = width; }
  STRING GetDirectory() const;

 private:
  /// What holds at present.
  struct STATUS {
    bool path_set = false;
    bool file_set = false;
    bool stream_open = false;
    bool open_for_writing = false;
    bool record_valid = false;
    bool record_type_valid = false;
    bool at_end = false;  ///< the stream is at the end of the last record that was written
  };

  void NeedStreamAndType(const char* no_file, const char* no_type) const;
  bool ReadItem(RECORD_ITEM& item);
  void ChangePath(const MDB_PATH_INFO& path);
  /// Reads the record that was found at a place before.
  void ReadAgain(std::streamoff start);
  /// Of the record read last and its predecessor, by their places (-1: none).
  void ChooseNearest(const RECORD_ITEM& wanted, std::streamoff start, std::streamoff former_start);

  LINE_STREAM stream;
  MDB_PATH_INFO path_info;
  STATUS status;
  RECORD_ITEM key;
  ARRAY<RECORD_ITEM> items;
  int name_width = -1;
};

}  // namespace varnoth
