#include "pool/enumeration_entry.hpp"

#include <algorithm>
#include <cstring>

#include "foundation/errors.hpp"

namespace varnoth {

STRING ValidValues(VALID_TEXTS valid) {
  STRING list("Valid values are: ");
  for (const char* text : valid) list += STRING("'") + text + "' ";
  return list;
}

void ReadEnumeration(PARAMETER_POOL& pool, const char* key, VALID_TEXTS valid, STRING& value) {
  STRING text;
  pool.Read(key, text);
  if (std::none_of(valid.begin(), valid.end(), [&](const char* candidate) {
        return std::strcmp(candidate, text.c_str()) == 0;
      })) {
    LogInvalidText(pool, key, text, ValidValues(valid));
    throw INVALID_PARAMETER_VALUE();
  }
  value = text;
}

void LogInvalidText(const PARAMETER_POOL& pool, const char* key, const STRING& value,
                    const STRING& valid_values) {
  GlobalLog.set(ALARM) << "parameter pool: parameter key >> " << key << " << of "
                       << pool.GetFileName() << " << read value is : " << value << " "
                       << valid_values << "\n";
}

}  // namespace varnoth
