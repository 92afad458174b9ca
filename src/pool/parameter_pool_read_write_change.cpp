#include "pool/parameter_pool_read_write_change.hpp"

#include <libgen.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <string_view>
#include <unordered_set>

#include "system/file_access.hpp"
#include "system/temporary_file.hpp"

namespace varnoth {

namespace {

/// Name pattern of the temporary file beside a pool.
std::string TemporaryPattern(const char* pool) {
  constexpr std::size_t PATH_LIMIT = 1000;
  std::string path(pool, strnlen(pool, PATH_LIMIT));
  return std::string(dirname(path.data())) + "//pool_XXXXXX";  // dirname changes its argument
}

void LogSystemError(int error) { GlobalLog.set(ALARM) << std::strerror(error) << "\n"; }

}  // namespace

void write_entry(const PARAMETER_POOL_ITEM& item, POOL_STREAM& pool) {
  pool.Write(item.Text().Text());
  pool.Flush();
}

PARAMETER_POOL_READ_WRITE_CHANGE::PARAMETER_POOL_READ_WRITE_CHANGE(const char* path,
                                                                   unsigned option_value)
    : PARAMETER_POOL(path, option_value) {
  if (!writable) {
    GlobalLog.set(ALARM) << "can not open pool file for update " << path << "\n";
    throw CAN_NOT_OPEN_POOL();
  }
  was_filled = stream.Size() > 0;
  GlobalLog.set(DEBUG) << "construct pool_rwc: " << path << "\n";
}

PARAMETER_POOL_READ_WRITE_CHANGE::~PARAMETER_POOL_READ_WRITE_CHANGE() noexcept(false) {
  if (std::uncaught_exceptions() == exceptions_at_start) {
    update();
    return;
  }
  try {
    update();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the log has the lines of the failure
  }
}

void PARAMETER_POOL_READ_WRITE_CHANGE::WriteNew(PARAMETER_POOL_ITEM item) {
  if (list.find(item.key) != 0 || find_key(item.key)) throw PARAMETER_KEY_EXISTS();
  Add(WRITE, std::move(item));
}

void PARAMETER_POOL_READ_WRITE_CHANGE::Add(OPERATION operation, PARAMETER_POOL_ITEM item) {
  if (!item.Text().FitsReader()) {
    GlobalLog.set(ALARM) << "parameter pool: parameter key >> " << item.key
                         << " << value or comment makes a line longer than "
                         << ENTRY_READER::LINE_LIMIT << " bytes\n";
    throw INVALID_PARAMETER_VALUE();
  }
  if (list.find(item.key) != 0) list.remove_current();
  LogOperation(operation, item.key, item.type);
  list.add(std::move(item));
}

void PARAMETER_POOL_READ_WRITE_CHANGE::Lock() {
  if (stream.IsLocked() || stream.SetLock(POOL_STREAM::LOCK::EXCLUSIVE, LOCK_SECONDS)) return;
  if (errno == EAGAIN) {
    GlobalLog.set(ALARM) << "another process keeps parameter pool " << file_name << " locked\n";
    throw NO_UPDATE_PERMISSION_FOR_POOL();
  }
  GlobalLog.set(WARNING) << "can not lock parameter pool " << file_name << ": "
                         << std::strerror(errno) << "\n";
}

void PARAMETER_POOL_READ_WRITE_CHANGE::update() {
  if (!stream.IsOpen()) return;
  // Whatever happens below, nobody tries a second time.
  struct CLOSER_OF_POOL {
    PARAMETER_POOL_READ_WRITE_CHANGE& pool;
    ~CLOSER_OF_POOL() {
      pool.stream.Close();
      pool.list.clear();
    }
  } const closer{*this};

  Lock();
  // The entries are in the temporary file of the process that emptied the pool; our results alone
  // would look like a whole pool.
  if (was_filled && stream.Size() == 0) {
    GlobalLog.set(ALARM) << "parameter pool " << file_name
                         << " was emptied meanwhile, look for pool_XXXXXX beside it\n";
    throw CORRUPTED_PARAMETER_POOL();
  }
  const std::string temporary_name = WriteTemporary();
  GlobalLog.set(DEBUG) << "copy " << temporary_name << " to " << file_name << "\n";
  CopyOver(temporary_name);
}

std::string PARAMETER_POOL_READ_WRITE_CHANGE::WriteTemporary() {
  const std::string pattern = TemporaryPattern(file_name.c_str());
  const TEMPORARY_FILE created = CreateUniqueFile(pattern);
  if (created.descriptor < 0) LogSystemError(errno);
  std::string temporary_name = created.path.empty() ? pattern : created.path;
  GlobalLog.set(DEBUG) << "open pool: " << temporary_name << "\n";
  POOL_STREAM temporary;
  temporary.Take(created.descriptor);
  if (!temporary.IsOpen()) {
    for (int told = 0; told < 2; ++told) {  // once for the opening, once for its caller
      GlobalLog.set(ALARM) << "can not open parameter file " << temporary_name << "\n";
    }
    GlobalLog.set(ALARM) << "no permission to change pool file: " << file_name << "\n";
    throw NO_UPDATE_PERMISSION_FOR_POOL();
  }
  Merge(temporary);
  const bool on_disk = !is_durable || (temporary.Sync() && SyncName(temporary_name.c_str()));
  const bool written = temporary.Close() && on_disk;
  if (!written || stream.HasError()) {
    GlobalLog.set(ALARM) << "can not update parameter pool: " << file_name << "\n";
    GlobalLog.set(ALARM) << "the corrupted parameter pool is:" << temporary_name << "\n";
    GlobalLog.set(ALARM) << "the original parameter pool is NOT CHANGED !!\n";
    throw CORRUPTED_PARAMETER_POOL();
  }
  return temporary_name;
}

void PARAMETER_POOL_READ_WRITE_CHANGE::Merge(POOL_STREAM& temporary) {
  // A search of the list for each key of a large pool would be most of the work.
  std::unordered_set<std::string_view> pending;
  for (const PARAMETER_POOL_ITEM& item : list) pending.insert(item.key);
  entry.Rewind();
  entry.NextLine();
  // The loops test for the end before they use a line: the last line has the end mark, and the
  // merge drops it.
  while (!stream.AtEnd()) {
    const bool is_pending = entry.IsKeyLine() && pending.erase(entry.ReadKey()) > 0;
    if (is_pending && list.find(entry.ReadKey()) != 0) {
      write_entry(list.current(), temporary);
      list.remove_current();
      do {
        entry.NextLine();
      } while (!stream.AtEnd() && !entry.IsKeyLine() && !entry.IsCommentLine());
    } else {
      do {
        temporary.Write(entry.Line());
        entry.NextLine();
      } while (!stream.AtEnd() && !entry.IsKeyLine());
    }
  }
  for (const PARAMETER_POOL_ITEM& item : list) write_entry(item, temporary);
  list.clear();
  temporary.Flush();
}

void PARAMETER_POOL_READ_WRITE_CHANGE::CopyOver(const std::string& temporary_name) {
  const auto tell_of_copy = [&] {
    GlobalLog.set(ALARM) << "the complete content is kept in: " << temporary_name << "\n";
  };
  POOL_STREAM temporary;
  const bool is_open = temporary.Open(temporary_name.c_str(), POOL_STREAM::MODE::READ);
  const std::string_view content = is_open ? temporary.ReadRest() : "";
  // Truncate the pool only when its complete new content is in memory.
  if (!is_open || temporary.HasError()) {
    LogSystemError(errno);
    GlobalLog.set(ALARM) << "Error opening file " << temporary_name << "\n";
    tell_of_copy();
    throw ERROR_I_O();
  }
  bool is_written = stream.Truncate();
  int error = errno;
  if (is_written) {
    is_written = stream.WriteThrough(content) && (!is_durable || stream.Sync());
    error = errno;
    if (!stream.Close() && is_written) {
      is_written = false;
      error = errno;
    }
  }
  if (!is_written) {
    GlobalLog.set(ALARM) << "can not update pool " << file_name << "\n";
    LogSystemError(error);
    tell_of_copy();
    throw ERROR_PARAMETER_POOL();
  }
  temporary.Close();
  if (unlink(temporary_name.c_str()) != 0) {
    GlobalLog.set(WARNING) << "can not remove tmp file: " << temporary_name << "\n";
  }
}

}  // namespace varnoth
