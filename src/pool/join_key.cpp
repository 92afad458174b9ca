#include "pool/join_key.hpp"

#include "foundation/errors.hpp"
#include "pool/entry_reader.hpp"

namespace varnoth {

void join_key(STRING& result, std::initializer_list<const char*> parts) {
  STRING key;
  for (const char* part : parts) {
    if (part == nullptr || *part == '\0') continue;
    if (!key.IsEmpty()) key += "_";
    key += part;
  }
  if (key.Length() > ENTRY_READER::KEY_LIMIT) throw PARAMETER_KEY_TOO_LONG();
  result = key;
}

STRING select_part(const TUPLE<STRING>& tuple, bool second) {
  return second ? tuple.second : tuple.first;
}

}  // namespace varnoth
