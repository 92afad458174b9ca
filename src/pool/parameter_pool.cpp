#include "pool/parameter_pool.hpp"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace varnoth {

namespace {

bool IsDirectory(const char* path) {
  struct stat status {};
  return ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

const char* LastComponent(const char* path) {
  const char* slash = std::strrchr(path, '/');
  return slash != nullptr ? slash + 1 : path;
}

}  // namespace

PARAMETER_POOL::PARAMETER_POOL() {
  Init();
  GlobalLog.set(TRACE) << "init pool\n";
}

PARAMETER_POOL::PARAMETER_POOL(const char* path, unsigned option_value) {
  GlobalLog.set(DEBUG) << "open pool: " << path << "\n";
  try {
    open(path);
  } catch (...) {
    GlobalLog.set(ALARM) << "can not open parameter file " << path << "\n";
    throw;
  }
  option = option_value;
}

void PARAMETER_POOL::Init() {
  stream.Close();
  entry.Rewind();
  file_name = "xxx.dat";
  short_name = file_name;
  writable = true;
  option = 0;
  read_log_level = TRACE;
  not_found_log_level = ALARM;
}

int PARAMETER_POOL::open(const char* path) {
  Init();
  if (IsDirectory(path)) {
    GlobalLog.set(ALARM) << "parameter file " << path << " is a directory!\n";
    throw CAN_NOT_OPEN_POOL();
  }
  file_name = path;
  short_name = LastComponent(path);
  writable = stream.Open(path, POOL_STREAM::MODE::READ_WRITE) ||
             stream.Open(path, POOL_STREAM::MODE::CREATE);
  if (!writable && !stream.Open(path, POOL_STREAM::MODE::READ)) {
    GlobalLog.set(ALARM) << "can not open parameter file " << path << "\n";
    throw CAN_NOT_OPEN_POOL();
  }
  return stream.Descriptor();
}

void PARAMETER_POOL::close() {
  stream.Close();
  file_name = "";
}

bool PARAMETER_POOL::find_key(const char* key) {
  if (!stream.IsOpen()) {
    GlobalLog.set(ALARM) << "No file pointer given for parameter pool\n";
    throw ERROR_ALGORITHM();
  }
  if (entry.FindKey(key)) return true;
  // A failed read must not look like a missing key: the caller would go on with a default.
  CheckRead();
  return !stream.IsLocked() && FindKeyBetweenUpdates(key);
}

bool PARAMETER_POOL::FindKeyBetweenUpdates(const char* key) {
  if (!stream.SetLock(POOL_STREAM::LOCK::SHARED, LOCK_SECONDS)) return false;
  const bool is_found = entry.FindKey(key);
  stream.SetLock(POOL_STREAM::LOCK::NONE, 0.0);
  if (!is_found) CheckRead();
  return is_found;
}

void PARAMETER_POOL::CheckRead() const {
  if (!stream.HasError()) return;
  GlobalLog.set(ALARM) << "can not read parameter file " << file_name << ": "
                       << std::strerror(errno) << "\n";
  throw ERROR_CAN_NOT_READ_FILE();
}

void PARAMETER_POOL::NeedKey(const char* key) {
  if (find_key(key)) return;
  GlobalLog.set(not_found_log_level)
      << "parameter pool: parameter key >> " << key << " << not found\n";
  throw PARAMETER_KEY_NOT_FOUND();
}

TYPE_CODE PARAMETER_POOL::ReadType() {
  entry.RewindLine();
  if (!entry.NextToken() || !entry.NextToken()) {
    entry.Fail<ERROR_PARAMETER_POOL>(" << no type information found\n");
  }
  return TypeFromName(entry.Token());
}

TYPE_CODE PARAMETER_POOL::get_type(const char* key) {
  NeedKey(key);
  return ReadType();
}

void PARAMETER_POOL::BeginEntry(const char* key, TYPE_CODE type) {
  NeedKey(key);
  if (ReadType() != type) {
    entry.Fail<WRONG_PARAMETER_TYPE>(" << type ", TypeRow(type).name, " expected\n");
  }
  if (!entry.NextToken()) {
    entry.Fail<INVALID_PARAMETER_VALUE>(" << no parameter value in file\n");
  }
}

template <class V>
void PARAMETER_POOL::ReadEntry(const char* key, V& value) {
  BeginEntry(key, POOL_TYPE<V>);
  entry.Parse(value);
  CheckRead();
  LogOperation(READ, key, POOL_TYPE<V>);
}

void PARAMETER_POOL::LogOperation(OPERATION operation, const char* key, TYPE_CODE type) const {
  static constexpr const char* WORDS[] = {"", "Read", "Write", "Change"};
  GlobalLog.set(read_log_level) << "PP." << WORDS[operation] << " " << short_name << " " << key
                                << " " << TypeRow(type).name << "\n";
}

#define VARNOTH_INSTANTIATE(...)                                                \
  template void PARAMETER_POOL::ReadEntry(const char* key, __VA_ARGS__& value); \
  template void PARAMETER_POOL::ReadEntry(const char* key, ARRAY<__VA_ARGS__>& value);
VARNOTH_POOL_ELEMENTS(VARNOTH_INSTANTIATE)
#undef VARNOTH_INSTANTIATE
#define VARNOTH_INSTANTIATE(...) \
  template void PARAMETER_POOL::ReadEntry(const char* key, MATRIX<__VA_ARGS__>& value);
VARNOTH_POOL_MATRIX_ELEMENTS(VARNOTH_INSTANTIATE)
#undef VARNOTH_INSTANTIATE

}  // namespace varnoth
