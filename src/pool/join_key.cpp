#include "pool/join_key.hpp"

#include <cstring>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "pool/entry_reader.hpp"

namespace varnoth {

void CheckKeyLength(const char* key) {
  if (std::strlen(key) <= ENTRY_READER::KEY_LIMIT) return;
  GlobalLog.set(ALARM) << "parameter pool: parameter key >> " << key << " << is longer than "
                       << ENTRY_READER::KEY_LIMIT << " characters\n";
  throw PARAMETER_KEY_TOO_LONG();
}

STRING join_key(std::initializer_list<const char*> parts) {
  STRING key;
  join_key(key, parts);
  return key;
}

void join_key(STRING& result, std::initializer_list<const char*> parts) {
  STRING key;
  for (const char* part : parts) {
    if (part == nullptr || *part == '\0') continue;
    if (!key.IsEmpty()) key += "_";
    key += part;
  }
  CheckKeyLength(key.c_str());
  result = key;
}

STRING select_part(const TUPLE<STRING>& tuple, bool second) {
  return second ? tuple.second : tuple.first;
}

}  // namespace varnoth
