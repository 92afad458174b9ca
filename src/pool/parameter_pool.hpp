#pragma once

#include "foundation/string.hpp"
#include "pool/entry_reader.hpp"
#include "pool/pool_stream.hpp"
#include "pool/value_traits.hpp"

namespace varnoth {

/// The typed reading class of a pool file.
///
/// It holds no index: every read searches the file again from its start, so that the file stays a
/// plain file that other processes may edit between reads. The first entry of a key wins. Each
/// successful read is a trace line; each failure is a line in words and an exception of the
/// ERROR_PARAMETER_POOL family. A failed read leaves the value as it was, or a vector partly
/// filled, and the pool usable.
class PARAMETER_POOL {
 public:
  PARAMETER_POOL();
  /// Opens the pool. Throws like `open`.
  explicit PARAMETER_POOL(const char* path, unsigned option_value = 0);
  virtual ~PARAMETER_POOL() noexcept(false) = default;
  PARAMETER_POOL(const PARAMETER_POOL&) = delete;
  PARAMETER_POOL& operator=(const PARAMETER_POOL&) = delete;

  /// Opens a pool for reading and writing, else for reading alone, and gives the descriptor. A pool
  /// that is not there is created empty. Throws CAN_NOT_OPEN_POOL, also for a directory.
  int open(const char* path);
  void close();

  /// Whether the file has an entry of that key. A key that is not there is looked for again between
  /// two updates, since another process's update fills the file anew. Throws ERROR_ALGORITHM on a
  /// closed pool and ERROR_CAN_NOT_READ_FILE where the file can't be read.
  bool find_key(const char* key);
  /// Type code of the key's entry; UNKNOWN for a type word that is none. Throws
  /// PARAMETER_KEY_NOT_FOUND.
  TYPE_CODE get_type(const char* key);

  /// Reads the entry of a key into a scalar, an ARRAY (or VECTOR) or a MATRIX of any type of the
  /// type table. The array takes on the first index and count that stand in the file. Throws
  ///  - PARAMETER_KEY_NOT_FOUND,
  ///  - WRONG_PARAMETER_TYPE: there is no conversion between types,
  ///  - INVALID_PARAMETER_VALUE, PARAMETER_OUT_OF_BOUNDS: the value is unreadable or too large,
  ///  - ERROR_PARAMETER_POOL: a block is broken,
  ///  - ERROR_NO_MEMORY.
  template <POOL_SCALAR X>
  void Read(const char* key, X& value) {
    X found = value;  // a pair may fail at its second part
    ReadEntry(key, found);
    value = found;
  }
  template <class X>
  void Read(const char* key, ARRAY<X>& value) {
    ReadEntry(key, value);
  }
  template <class X>
  void Read(const char* key, MATRIX<X>& value) {
    ReadEntry(key, value);
  }

  /// Level of the trace lines (default TRACE) and of the line for a missing key (default ALARM).
  void set_read_log_level(int level) { read_log_level = level; }
  void set_not_found_log_level(int level) { not_found_log_level = level; }

  const STRING& GetFileName() const { return file_name; }

 protected:
  /// How long a run waits for another process's lock on a pool, in seconds; as for a key at the
  /// keyboard.
  static constexpr double LOCK_SECONDS = 120.0;

  enum OPERATION { NONE, READ, WRITE, CHANGE };
  void LogOperation(OPERATION operation, const char* key, TYPE_CODE type) const;

  STRING file_name;
  STRING short_name;  ///< last component of `file_name`
  bool writable = true;
  int read_log_level = TRACE;
  int not_found_log_level = ALARM;
  POOL_STREAM stream;
  ENTRY_READER entry{stream};
  unsigned option = 0;
  bool is_locked = false;  ///< by this object, against other updates

 private:
  template <class V>
  void ReadEntry(const char* key, V& value);
  void Init();
  bool FindKeyBetweenUpdates(const char* key);
  void NeedKey(const char* key);
  /// Throws ERROR_CAN_NOT_READ_FILE, behind a line at ALARM, if what was read is not to be trusted.
  void CheckRead() const;
  TYPE_CODE ReadType();
  /// Finds the entry, checks its type and takes the first token of its value.
  void BeginEntry(const char* key, TYPE_CODE type);
};

}  // namespace varnoth
