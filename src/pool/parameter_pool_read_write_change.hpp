#pragma once

#include <exception>

#include "pool/parameter_pool.hpp"
#include "pool/parameter_pool_list.hpp"

namespace varnoth {

/// A pool that is read and written.
///
///     PARAMETER_POOL_READ_WRITE_CHANGE pool("results.dat");
///     pool.Change("local_height", 12.5, ARRAY<STRING>("height above the ellipsoid in [m]"));
///     pool.update();
///
/// A write doesn't touch the file: it goes to a list in memory, and one update at the end merges
/// the list with the file. A replaced entry keeps its place and the comment lines above it; new
/// keys go to the end, the last one written first. Every other line stays, but for a last line
/// without a line end: the update drops it.
///
/// `Read` and `find_key` see the file alone, so they don't find a new key before the update.
class PARAMETER_POOL_READ_WRITE_CHANGE : public PARAMETER_POOL {
 public:
  PARAMETER_POOL_READ_WRITE_CHANGE() = default;
  /// Opens the pool. Throws CAN_NOT_OPEN_POOL, after a line at ALARM, also for a file that can't
  /// be written.
  explicit PARAMETER_POOL_READ_WRITE_CHANGE(const char* path, unsigned option_value = 0);
  /// Runs `update` unless the pool is closed already, and throws what `update` throws. While
  /// another exception unwinds, it throws nothing and a failed update only leaves its lines in the
  /// log.
  ~PARAMETER_POOL_READ_WRITE_CHANGE() noexcept(false) override;
  PARAMETER_POOL_READ_WRITE_CHANGE(const PARAMETER_POOL_READ_WRITE_CHANGE&) = delete;
  PARAMETER_POOL_READ_WRITE_CHANGE& operator=(const PARAMETER_POOL_READ_WRITE_CHANGE&) = delete;

  /// Adds an entry that must be new, with comment lines above it. Throws PARAMETER_KEY_EXISTS, with
  /// no log line, if the key is in the list or in the file. Throws, after a line at ALARM,
  /// PARAMETER_KEY_TOO_LONG above 100 characters, INVALID_PARAMETER_VALUE for a line of more than
  /// 1024 bytes, and what `find_key` throws.
  template <POOL_SCALAR X>
  void Write(const char* key, const X& value, const ARRAY<STRING>& comments = {}) {
    WriteNew({key, value, comments});
  }
  template <class X>
  void Write(const char* key, const ARRAY<X>& value, const ARRAY<STRING>& comments = {}) {
    WriteNew({key, value, comments});
  }
  template <class X>
  void Write(const char* key, const MATRIX<X>& value, const ARRAY<STRING>& comments = {}) {
    WriteNew({key, value, comments});
  }
  void Write(const char* key, const char* value, const ARRAY<STRING>& comments = {}) {
    WriteNew({key, STRING(value), comments});
  }

  /// Adds an entry or replaces one in the list or the file; the last value of a key reaches the
  /// file. Throws, after a line at ALARM, PARAMETER_KEY_TOO_LONG and INVALID_PARAMETER_VALUE as
  /// `Write` does.
  template <POOL_SCALAR X>
  void Change(const char* key, const X& value, const ARRAY<STRING>& comments = {}) {
    Add(CHANGE, {key, value, comments});
  }
  template <class X>
  void Change(const char* key, const ARRAY<X>& value, const ARRAY<STRING>& comments = {}) {
    Add(CHANGE, {key, value, comments});
  }
  template <class X>
  void Change(const char* key, const MATRIX<X>& value, const ARRAY<STRING>& comments = {}) {
    Add(CHANGE, {key, value, comments});
  }
  void Change(const char* key, const char* value, const ARRAY<STRING>& comments = {}) {
    Add(CHANGE, {key, STRING(value), comments});
  }

  /// Keeps updates by other processes out until this one is done, so that reads from now on see
  /// what the update finds. Waits for a lock that another process holds, at most for LOCK_SECONDS,
  /// and then throws NO_UPDATE_PERMISSION_FOR_POOL, after a line at ALARM. Where the system can't
  /// lock files, it writes a line at WARNING.
  void Lock();

  /// Makes the update wait until the disk holds what it wrote: the complete new content before it
  /// cuts the pool, and the pool before it removes the file with that content.
  void SetDurable(bool is_wanted) { is_durable = is_wanted; }

  /// Locks the pool, merges the list with the file and closes the pool, on failure too. Does
  /// nothing on a closed pool: `close` without an update drops what was written.
  ///
  /// The update builds the complete new content in a file beside the pool, named "pool_" and six
  /// random characters, and then copies it into the pool's own file, which so keeps its owner,
  /// permissions and links. Whatever stops the update, the old pool or the file beside it holds
  /// everything. Throws, after lines at ALARM,
  ///  - NO_UPDATE_PERMISSION_FOR_POOL: the file beside the pool can't be made, or see `Lock`,
  ///  - CORRUPTED_PARAMETER_POOL: reading the pool or writing the file beside it failed, or the
  ///    pool has lost its content since it was opened, as by a process that died in its update; the
  ///    pool is as it was,
  ///  - ERROR_I_O: the file beside the pool can't be read back; the pool is as it was,
  ///  - ERROR_PARAMETER_POOL: the pool's own file can't be written.
  void update();

 private:
  void WriteNew(PARAMETER_POOL_ITEM item);
  /// Puts an item at the front of the list and removes an older one of the same key.
  void Add(OPERATION operation, PARAMETER_POOL_ITEM item);
  /// Writes the new content beside the pool and gives the file's name. Its frame is gone before
  /// `CopyOver`, which has a block of its own.
  std::string WriteTemporary();
  void Merge(POOL_STREAM& temporary);
  void CopyOver(const std::string& temporary_name);

  PARAMETER_POOL_LIST list;
  bool is_durable = false;
  bool was_filled = false;  ///< whether the pool had content when it was opened
  int exceptions_at_start = std::uncaught_exceptions();
};

/// Writes an item's entry to a pool's file and flushes it. A failed write shows in
/// `POOL_STREAM::HasError`. Throws ERROR_UNHANDLED_CASE for an item without a type.
void write_entry(const PARAMETER_POOL_ITEM& item, POOL_STREAM& pool);

}  // namespace varnoth
