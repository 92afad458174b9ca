#include "pool/parameter_pool_item.hpp"

#include <cstring>
#include <utility>

#include "foundation/errors.hpp"
#include "pool/join_key.hpp"

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
  text.reset();
  return *this;
}

void PARAMETER_POOL_ITEM::StoreKey(const char* item_key) {
  CheckKeyLength(item_key);
  std::memcpy(key, item_key, std::strlen(item_key) + 1);
}

const ENTRY_TEXT& PARAMETER_POOL_ITEM::Text() const {
  if (text != nullptr) return *text;
  if (type == UNKNOWN) throw ERROR_UNHANDLED_CASE();
  if (type >= TYPE_COUNT) {
    text = std::make_unique<ENTRY_TEXT>();
    return *text;
  }
  auto made = std::make_unique<ENTRY_TEXT>(key, type, comments);
  value->AppendTo(*made);
  text = std::move(made);
  return *text;
}

}  // namespace varnoth
