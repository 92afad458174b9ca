#pragma once

#include <cstring>
#include <list>
#include <type_traits>

#include "foundation/errors.hpp"
#include "pool/parameter_pool_item.hpp"

namespace varnoth {

/// A doubly linked list with an end sentinel, a count and a cursor.
template <class X>
class LIST {
 public:
  LIST() : cursor(items.end()) {}
  virtual ~LIST() = default;
  LIST(const LIST&) = delete;
  LIST& operator=(const LIST&) = delete;

  int count() const { return static_cast<int>(items.size()); }
  /// The item under the cursor.
  X& current() { return *cursor; }
  const X& current() const { return *cursor; }
  /// Unlinks and frees the item under the cursor; the cursor then stands on the next one.
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

/// The other in-memory type of a pair's type code.
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

/// The pending entries of a pool. A new item goes in front of the head, so that the list holds the
/// entries in the reverse order of their adding; files in use show it in the order of new keys.
class PARAMETER_POOL_LIST : public LIST<PARAMETER_POOL_ITEM> {
 public:
  /// Looks for a key (exact) from the head and leaves the cursor on the hit; 1 or 0.
  int find(const char* key) {
    for (cursor = items.begin(); cursor != items.end(); ++cursor) {
      if (std::strcmp(cursor->key, key) == 0) return 1;
    }
    return 0;
  }
  void add(PARAMETER_POOL_ITEM item) { items.push_front(std::move(item)); }
  /// Adds a copy of a value and its comments under a key.
  template <class V>
  void add(const char* key, const V& value, const ARRAY<STRING>& comments) {
    add(PARAMETER_POOL_ITEM(key, value, comments));
  }
  /// Copies the value of a key out; a POINT and a RANGE of one type code stand for each other.
  /// Throws PARAMETER_KEY_NOT_FOUND, WRONG_PARAMETER_TYPE if the item holds another in-memory type,
  /// and what the copy throws.
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
