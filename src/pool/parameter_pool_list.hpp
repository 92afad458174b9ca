#pragma once

#include <cstring>
#include <list>
#include <type_traits>

#include "foundation/errors.hpp"
#include "pool/parameter_pool_item.hpp"

namespace varnoth {

/// A doubly linked list with a count and a cursor, which starts at the end.
template <class X>
class LIST {
 public:
  LIST() : cursor(items.end()) {}
  virtual ~LIST() = default;
  LIST(const LIST&) = delete;
  LIST& operator=(const LIST&) = delete;

  int count() const { return static_cast<int>(items.size()); }
  /// The item under the cursor; undefined if the cursor is at the end.
  X& current() { return *cursor; }
  const X& current() const { return *cursor; }
  /// Removes the item under the cursor, which moves to the next one; undefined at the end.
  void remove_current() { cursor = items.erase(cursor); }
  void clear() {
    items.clear();
    cursor = items.end();
  }
  auto begin() const { return items.begin(); }
  auto end() const { return items.end(); }

 protected:
  std::list<X> items;
  mutable typename std::list<X>::iterator cursor;
};

/// The other in-memory type with the same type code: POINT for RANGE and the reverse, void for all
/// others.
template <class V>
struct TWIN_OF {
  using TYPE = void;
};
template <class T>
struct TWIN_OF<POINT<T>> {
  using TYPE = RANGE<T>;
};
template <class T>
struct TWIN_OF<RANGE<T>> {
  using TYPE = POINT<T>;
};
template <class X>
struct TWIN_OF<ARRAY<X>> {
  using TYPE = std::conditional_t<std::is_void_v<typename TWIN_OF<X>::TYPE>, void,
                                  ARRAY<typename TWIN_OF<X>::TYPE>>;
};
template <class V>
using TWIN = typename TWIN_OF<V>::TYPE;

template <class T>
void CopyTwin(const POINT<T>& from, RANGE<T>& to) {
  to = {from.x, from.y};
}
template <class T>
void CopyTwin(const RANGE<T>& from, POINT<T>& to) {
  to = {from.first, from.second};
}
template <class X, class Y>
void CopyTwin(const ARRAY<X>& from, ARRAY<Y>& to) {
  to.NeedRange(from.GetRange(), "ARRAY : can not copy array");
  for (int i = 0; i < from.GetLength(); ++i) {
    CopyTwin(from.begin()[i], to.begin()[i]);
  }
}

/// The pending entries of a pool.
///
///     PARAMETER_POOL_LIST list;
///     list.add("fringe_count", 42, ARRAY<STRING>("number of fringes"));
///     int count = 0;
///     list.get("fringe_count", count);
///
/// A new item goes to the front, so the list begins with the entry that was added last. New keys
/// reach a pool file in this order.
class PARAMETER_POOL_LIST : public LIST<PARAMETER_POOL_ITEM> {
 public:
  /// Searches for a key (exact) from the front: 1 with the cursor on the item, or 0 with the cursor
  /// at the end.
  int find(const char* key) {
    for (cursor = items.begin(); cursor != items.end(); ++cursor) {
      if (std::strcmp(cursor->key, key) == 0) return 1;
    }
    return 0;
  }
  void add(PARAMETER_POOL_ITEM item) { items.push_front(std::move(item)); }
  /// Adds a copy of a value and its comments under a key. Throws PARAMETER_KEY_TOO_LONG after a
  /// line at ALARM.
  template <class V>
  void add(const char* key, const V& value, const ARRAY<STRING>& comments) {
    add(PARAMETER_POOL_ITEM(key, value, comments));
  }
  /// Copies the value of a key out; a POINT reads a RANGE of the same type code and the reverse.
  /// Throws, with no log line, PARAMETER_KEY_NOT_FOUND, WRONG_PARAMETER_TYPE if the item holds any
  /// other in-memory type, and what the copy throws.
  template <POOL_SCALAR X>
  void get(const char* key, X& value) {
    Copy(key, value);
  }
  template <class X>
  void get(const char* key, ARRAY<X>& value) {
    Copy(key, value);
  }
  template <class X>
  void get(const char* key, MATRIX<X>& value) {
    Copy(key, value);
  }

 private:
  template <class V>
  void Copy(const char* key, V& value) {
    if (find(key) == 0) throw PARAMETER_KEY_NOT_FOUND();
    if (const auto* held = dynamic_cast<const POOL_VALUE_OF<V>*>(current().value.get())) {
      value = held->value;
      return;
    }
    if constexpr (!std::is_void_v<TWIN<V>>) {
      if (const auto* held = dynamic_cast<const POOL_VALUE_OF<TWIN<V>>*>(current().value.get())) {
        CopyTwin(held->value, value);
        return;
      }
    }
    throw WRONG_PARAMETER_TYPE();
  }
};

}  // namespace varnoth
