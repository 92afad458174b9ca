#pragma once

#include <memory>
#include <utility>

#include "foundation/array.hpp"
#include "foundation/string.hpp"
#include "pool/entry_reader.hpp"
#include "pool/entry_text.hpp"
#include "pool/value_traits.hpp"

namespace varnoth {

/// A pending value with its type erased.
class POOL_VALUE {
 public:
  POOL_VALUE() = default;
  virtual ~POOL_VALUE() = default;
  POOL_VALUE(const POOL_VALUE&) = delete;
  POOL_VALUE& operator=(const POOL_VALUE&) = delete;
  virtual std::unique_ptr<POOL_VALUE> Copy() const = 0;
  virtual void AppendTo(ENTRY_TEXT& text) const = 0;
};

template <class V>
class POOL_VALUE_OF : public POOL_VALUE {
 public:
  explicit POOL_VALUE_OF(V source) : value(std::move(source)) {}
  std::unique_ptr<POOL_VALUE> Copy() const override {
    return std::make_unique<POOL_VALUE_OF>(value);
  }
  void AppendTo(ENTRY_TEXT& text) const override { text.Append(value); }

  const V value;
};

/// One pending entry of a pool: key, type, comment lines and an owned copy of the value.
///
///     const PARAMETER_POOL_ITEM item("local_height", 12.5, ARRAY<STRING>("height in [m]"));
///     const std::string& lines = item.Text().Text();
class PARAMETER_POOL_ITEM {
 public:
  /// The empty item: no key, no value, type UNKNOWN.
  PARAMETER_POOL_ITEM() = default;
  /// Throws PARAMETER_KEY_TOO_LONG, after a line at ALARM, for a key of more than 100 characters.
  template <class V>
  PARAMETER_POOL_ITEM(const char* item_key, const V& item_value, const ARRAY<STRING>& lines)
      : type(POOL_TYPE<V>), comments(lines), value(std::make_unique<POOL_VALUE_OF<V>>(item_value)) {
    StoreKey(item_key);
  }
  PARAMETER_POOL_ITEM(const PARAMETER_POOL_ITEM& other);
  PARAMETER_POOL_ITEM& operator=(const PARAMETER_POOL_ITEM& other);
  PARAMETER_POOL_ITEM(PARAMETER_POOL_ITEM&&) = default;
  PARAMETER_POOL_ITEM& operator=(PARAMETER_POOL_ITEM&&) = default;
  ~PARAMETER_POOL_ITEM() = default;

  /// The entry's text. The first call builds and keeps it: don't change the fields afterwards.
  /// Empty for a type code without a row in the type table. Throws ERROR_UNHANDLED_CASE, with no
  /// log line, for UNKNOWN.
  const ENTRY_TEXT& Text() const;

  char key[ENTRY_READER::KEY_LIMIT + 1] = {};
  TYPE_CODE type = UNKNOWN;
  ARRAY<STRING> comments;
  std::unique_ptr<POOL_VALUE> value;

 private:
  void StoreKey(const char* item_key);

  mutable std::unique_ptr<const ENTRY_TEXT> text;
};

}  // namespace varnoth
