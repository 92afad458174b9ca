#include "pool/parameter_pool_item.hpp"

#include <cstring>

#include "foundation/errors.hpp"

namespace varnoth {

PARAMETER_POOL_ITEM::PARAMETER_POOL_ITEM(const PARAMETER_POOL_ITEM& other)
    : type(other.type),
      comments(other.comments),
      value(other.value != nullptr ? other.value->Copy() : nullptr) {
  std::memcpy(key, other.key, sizeof key);
}

PARAMETER_POOL_ITEM& PARAMETER_POOL_ITEM::operator=(const PARAMETER_POOL_ITEM& other) {
  if (this == &other) return *this;
  std::memcpy(key, other.key, sizeof key);
  type = other.type;
  comments = other.comments;
  value = other.value != nullptr ? other.value->Copy() : nullptr;
  return *this;
}

void PARAMETER_POOL_ITEM::TakeKey(const char* item_key) {
  const std::size_t length = std::strlen(item_key);
  if (length >= sizeof key) {
    GlobalLog.set(ALARM) << "parameter pool: parameter key >> " << item_key << " << is longer than "
                         << ENTRY_READER::KEY_LIMIT << " characters\n";
    throw PARAMETER_KEY_TOO_LONG();
  }
  std::memcpy(key, item_key, length + 1);
}

ENTRY_TEXT PARAMETER_POOL_ITEM::Text() const {
  if (type == UNKNOWN) throw ERROR_UNHANDLED_CASE();
  ENTRY_TEXT text(key, type, comments);
  value->AppendTo(text);
  return text;
}

}  // namespace varnoth
