#pragma once

#include "foundation/string.hpp"
#include "pool/entry_reader.hpp"
#include "pool/pool_stream.hpp"
#include "pool/value_traits.hpp"

namespace varnoth {

/// Reads typed values from a pool file.
///
///     PARAMETER_POOL pool("scene.dat");
///     double height = 0.0;
///     pool.Read("local_height", height);
///     ARRAY<double> coefficients;
///     if (pool.find_key("polynomial")) pool.Read("polynomial", coefficients);
///
/// The class holds no index: every read searches the file from its start, so other processes may
/// edit the file between reads. The first entry of a key wins. Each successful read writes a line
/// at the read log level; each failure writes a line at ALARM, or at the level for a missing key,
/// and throws. A failed read leaves a scalar as it was and may leave an ARRAY or MATRIX resized and
/// partly filled; the pool stays usable.
class PARAMETER_POOL {
 public:
  /// A closed pool.
  PARAMETER_POOL();
  /// Opens the pool. Throws like `open`. Keeps `option_value`, which has no effect.
  explicit PARAMETER_POOL(const char* path, unsigned option_value = 0);
  virtual ~PARAMETER_POOL() noexcept(false) = default;
  PARAMETER_POOL(const PARAMETER_POOL&) = delete;
  PARAMETER_POOL& operator=(const PARAMETER_POOL&) = delete;

  /// Opens a pool for reading and writing, or for reading alone if writing is not permitted, and
  /// returns the descriptor. Closes an open pool first and sets both log levels back to their
  /// defaults. Creates a missing file empty. Throws CAN_NOT_OPEN_POOL, after a line at ALARM, also
  /// for a directory.
  int open(const char* path);
  /// Closes the file; the file name is then empty.
  void close();

  /// Whether the file has an entry of that key, exact and case-sensitive; a key in the file counts
  /// with its first 100 bytes. Looks for a missing key a second time between two updates, since an
  /// update by another process may be filling the file. Throws, after a line at ALARM,
  /// ERROR_ALGORITHM on a closed pool and ERROR_CAN_NOT_READ_FILE if the file can't be read.
  bool find_key(const char* key);
  /// Type code of the key's entry; UNKNOWN for a word that names no type. Throws what `find_key`
  /// throws, PARAMETER_KEY_NOT_FOUND after a line at the level for a missing key, and
  /// ERROR_PARAMETER_POOL after a line at ALARM if blanks fill the line up to its limit.
  TYPE_CODE get_type(const char* key);

  /// Reads the entry of a key into a scalar, an ARRAY (or VECTOR) or a MATRIX of any type of the
  /// type table. An array takes the first index and the count that the file gives, a matrix the
  /// first index and the count of rows and of columns. Throws what `get_type` throws, and after a
  /// line at ALARM
  ///  - WRONG_PARAMETER_TYPE: the entry has another type; there is no conversion,
  ///  - INVALID_PARAMETER_VALUE: the value is missing or unreadable (a float that is no number
  ///    reads as 0),
  ///  - PARAMETER_OUT_OF_BOUNDS: the type can't hold the value,
  ///  - ERROR_PARAMETER_POOL: a block or a pair is broken,
  ///  - ERROR_NO_MEMORY: also for a negative count and for a count above both 65536 and the file's
  ///    size in bytes.
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

  /// Level of the line for each read or write (default TRACE) and of the line for a missing key
  /// (default ALARM).
  void set_read_log_level(int level) { read_log_level = level; }
  void set_not_found_log_level(int level) { not_found_log_level = level; }

  const STRING& GetFileName() const { return file_name; }

 protected:
  /// How long a run waits for another process's lock on a pool, in seconds: as long as for an
  /// answer at the keyboard.
  static constexpr double LOCK_SECONDS = 120.0;

  enum OPERATION { NONE, READ, WRITE, CHANGE };
  void LogOperation(OPERATION operation, const char* key, TYPE_CODE type) const;

  STRING file_name;
  STRING short_name;  ///< last component of `file_name`
  bool writable = true;
  int read_log_level = TRACE;
  int not_found_log_level = ALARM;
  ENTRY_READER entry{stream};
  unsigned option = 0;
  POOL_STREAM stream;  ///< last: its block is long, and the rest shares a page with its start

 private:
  template <class V>
  void ReadEntry(const char* key, V& value);
  void Init();
  bool FindKeyBetweenUpdates(const char* key);
  void NeedKey(const char* key);
  /// Throws ERROR_CAN_NOT_READ_FILE, after a line at ALARM, if reading or writing the file failed.
  void CheckRead() const;
  TYPE_CODE ReadType();
  /// Finds the entry, checks its type and takes the first token of its value.
  void BeginEntry(const char* key, TYPE_CODE type);
};

}  // namespace varnoth
