#pragma once

#include <exception>

#include "pool/parameter_pool.hpp"
#include "pool/parameter_pool_list.hpp"

namespace varnoth {

/// A pool that is also written. A write doesn't touch the file: it goes to a list in memory, and
/// one update at the end merges the list with the file. Replaced keys take the place of their old
/// entries, new keys go to the end in the reverse order of their writing, every other line stays.
///
/// `Read` sees the file alone, so a key written on the same object is not visible to it before the
/// update.
class PARAMETER_POOL_READ_WRITE_CHANGE : public PARAMETER_POOL {
 public:
  PARAMETER_POOL_READ_WRITE_CHANGE() = default;
  /// Opens the pool. Throws CAN_NOT_OPEN_POOL, also for a file that can't be written.
  explicit PARAMETER_POOL_READ_WRITE_CHANGE(const char* path, unsigned option_value = 0);
  /// Does the update, if it has not been done, and may throw its exceptions. While another
  /// exception unwinds, a failing update leaves its lines in the log only.
  ~PARAMETER_POOL_READ_WRITE_CHANGE() noexcept(false) override;
  PARAMETER_POOL_READ_WRITE_CHANGE(const PARAMETER_POOL_READ_WRITE_CHANGE&) = delete;
  PARAMETER_POOL_READ_WRITE_CHANGE& operator=(const PARAMETER_POOL_READ_WRITE_CHANGE&) = delete;

  /// Adds an entry that must be new. Throws PARAMETER_KEY_EXISTS if the key is in the list or in
  /// the file, PARAMETER_KEY_TOO_LONG above 100 characters, and INVALID_PARAMETER_VALUE for a text
  /// that makes a line longer than a reader takes.
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

  /// Adds an entry that may be there already; the last value of a key is what is written. Throws
  /// like `Write`, but for PARAMETER_KEY_EXISTS.
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

  /// Keeps updates by other processes out until this one is done, so that what is read from now on
  /// is what the update finds. Waits for a lock that another process holds, at most for
  /// LOCK_SECONDS; throws NO_UPDATE_PERMISSION_FOR_POOL, behind a line at ALARM, after that. Where
  /// files can't be locked a line at WARNING tells of it.
  void Lock();

  /// Has an update wait until the disk holds what it wrote: the complete new content before the
  /// pool is cut, and the pool before that content's file goes.
  void SetDurable(bool is_wanted) { is_durable = is_wanted; }

  /// Merges the list with the file, which is locked meanwhile, and closes it; the pool is then done
  /// with. The complete new content is built in a file "pool_" and six characters beside the pool,
  /// and only then copied into the pool's own file, whose owner, rights and links so survive.
  /// Whatever stops the update, the old pool or that file holds everything. Throws
  ///  - NO_UPDATE_PERMISSION_FOR_POOL: the temporary file can't be made, or see `Lock`,
  ///  - CORRUPTED_PARAMETER_POOL: reading the pool or writing the temporary file failed,
  ///  - ERROR_I_O, ERROR_PARAMETER_POOL: the content can't be taken over.
  void update();

 private:
  void WriteNew(PARAMETER_POOL_ITEM item);
  /// Takes an item into the list, in the place of one of the same key.
  void Add(OPERATION operation, PARAMETER_POOL_ITEM item);
  void Merge(POOL_STREAM& temporary);
  void CopyOver(const std::string& temporary_name);

  PARAMETER_POOL_LIST list;
  bool is_durable = false;
  int exceptions_at_start = std::uncaught_exceptions();
};

/// Writes an item's entry to a pool's file and flushes it. Throws ERROR_UNHANDLED_CASE for an item
/// without a type.
void write_entry(const PARAMETER_POOL_ITEM& item, POOL_STREAM& pool);

}  // namespace varnoth
