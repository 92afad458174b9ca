#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "foundation/errors.hpp"
#include "foundation/pairs.hpp"

namespace varnoth {

/// What the sizing operations of ARRAY return.
enum ARRAY_RESULT : int { ARRAY_OK = 0, ARRAY_NO_MEMORY = 2, ARRAY_BAD_RANGE = 3 };

/// An array with a free first index, which is part of its value: element i is addressed by i
/// through `GetBase()`. Copies are deep. Element access is not checked.
///
/// A copy that can not be made throws the text "ARRAY : can not copy array".
template <class X>
class ARRAY {
 public:
  ARRAY() = default;
  /// `count` elements from index `first`; throws like a copy.
  ARRAY(int first, int count) {
    if (Make(RANGE<int>(first, count), false) != ARRAY_OK) throw "ARRAY : can not copy array";
  }
  ARRAY(const ARRAY& other) : ARRAY() {
    if (Make(other.range, false) != ARRAY_OK) throw "ARRAY : can not copy array";
    std::copy_n(other.data, other.range.Count(), data);
  }
  ARRAY& operator=(const ARRAY& other) {
    if (this == &other) return *this;
    if (Resize(other.range) != ARRAY_OK) throw "ARRAY : can not copy array";
    std::copy_n(other.data, other.range.Count(), data);
    return *this;
  }

  /// A list of up to 21 texts from index 0. Null texts at the end don't count, others are empty.
  /// Throws ERROR_NO_MEMORY.
  template <class... TEXTS>
  requires(std::is_same_v<X, STRING> && sizeof...(TEXTS) > 0 &&
           (std::is_convertible_v<TEXTS, const char*> && ...)) explicit ARRAY(TEXTS... texts)
      : ARRAY() {
    static_assert(sizeof...(TEXTS) <= 21, "a comment list has at most 21 texts");
    const char* const list[] = {texts...};
    int count = sizeof...(TEXTS);
    while (count > 0 && list[count - 1] == nullptr) --count;
    if (Make(RANGE<int>(0, count), false) != ARRAY_OK) throw ERROR_NO_MEMORY();
    std::copy_n(list, count, data);
  }

  virtual ~ARRAY() { Free(); }
  /// Forgets range and memory without freeing.
  virtual void Reset() {
    range = RANGE<int>();
    data = nullptr;
    raw = false;
  }
  /// Takes memory for the range and constructs its elements; the former content is released. A
  /// negative count, and a range beyond the last int, leave the array as it was.
  virtual int Create(const RANGE<int>& wanted) { return Make(wanted, false); }
  /// The same without constructing the elements; they will not be destroyed either.
  virtual int CreateRaw(const RANGE<int>& wanted) { return Make(wanted, true); }
  /// Releases the elements and the memory.
  virtual void Delete() {
    Free();
    ARRAY::Reset();
  }
  virtual int GetLength() const { return range.Count(); }
  virtual int GetFirstIndex() const { return range.First(); }
  virtual int GetLastIndex() const { return range.Last(); }
  virtual RANGE<int> GetRange() const { return range; }
  /// Pointer p such that p[index] is the array's first element; null without elements.
  virtual X* GetElementBase(int index) const { return data != nullptr ? data - index : nullptr; }
  /// Pointer p such that p[i] is element i of the array; null without elements.
  virtual X* GetBase() const { return GetElementBase(range.First()); }
  /// The elements in their order, whatever the first index is: `for (X& x : array)`.
  X* begin() { return data; }
  X* end() { return data + range.Count(); }
  const X* begin() const { return data; }
  const X* end() const { return data + range.Count(); }
  std::size_t size() const { return static_cast<std::size_t>(range.Count()); }
  /// Changes the range; elements keep their positions (not their indices) as far as both counts go.
  /// The same range is no work at all.
  virtual int Resize(const RANGE<int>& wanted) {
    if (wanted == range) return ARRAY_OK;
    if (!IsValid(wanted)) return ARRAY_BAD_RANGE;
    ARRAY resized;
    const int result = resized.Make(wanted, false);
    if (result != ARRAY_OK) return result;
    std::copy_n(data, std::min(range.Count(), wanted.Count()), resized.data);
    std::swap(range, resized.range);
    std::swap(data, resized.data);
    std::swap(raw, resized.raw);
    return ARRAY_OK;
  }
  /// `Resize` that throws ERROR_NO_MEMORY, or another failure, where the range is not to be had.
  template <class FAILURE = ERROR_NO_MEMORY>
  void NeedRange(const RANGE<int>& wanted, FAILURE failure = {}) {
    if (Resize(wanted) != ARRAY_OK) throw failure;
  }

 protected:
  RANGE<int> range;
  X* data = nullptr;
  bool raw = false;

 private:
  /// Whether a count is one and the last index fits its type, so that loops may count up to it.
  static bool IsValid(const RANGE<int>& wanted) {
    const long long last = static_cast<long long>(wanted.First()) + wanted.Count() - 1;
    return wanted.Count() >= 0 && last < INT_MAX && last >= INT_MIN;
  }
  // Elements of plain types stay undefined.
  static X* Allocate(int count, bool without_elements) {
    if (count == 0) return nullptr;
    void* memory = ::operator new(sizeof(X) * static_cast<std::size_t>(count), std::nothrow);
    auto* elements = static_cast<X*>(memory);
    if (elements != nullptr && !without_elements) {
      try {
        std::uninitialized_default_construct_n(elements, count);
      } catch (...) {
        ::operator delete(memory);
        throw;
      }
    }
    return elements;
  }
  int Make(const RANGE<int>& wanted, bool without_elements) {
    if (!IsValid(wanted)) return ARRAY_BAD_RANGE;
    X* memory = Allocate(wanted.Count(), without_elements);
    if (memory == nullptr && wanted.Count() != 0) return ARRAY_NO_MEMORY;
    Free();
    range = wanted;
    data = memory;
    raw = without_elements;
    return ARRAY_OK;
  }
  void Free() {
    if (data == nullptr) return;
    if (!raw) {
      for (int i = range.Count(); i-- > 0;) std::destroy_at(data + i);
    }
    ::operator delete(data);
  }
};

/// Logs at ALARM and throws ERROR_NOT_IMPLEMENTED.
[[noreturn]] void FailSubArrayAssignment();

/// A view on a part of an ARRAY; it owns no elements.
template <class X>
class SUB_ARRAY : public ARRAY<X> {
 public:
  SUB_ARRAY() = default;
  /// Another view on the same elements.
  SUB_ARRAY(const SUB_ARRAY& other) : ARRAY<X>() {
    this->data = other.data;
    this->range = other.range;
  }
  /// Not to be called, since it could mean the view or its elements: logs at ALARM and throws
  /// ERROR_NOT_IMPLEMENTED. Use `Attach`.
  SUB_ARRAY& operator=(const SUB_ARRAY& /*other*/) { FailSubArrayAssignment(); }
  ~SUB_ARRAY() override { this->data = nullptr; }

  /// A view makes no elements: both give ARRAY_BAD_RANGE and leave it as it was.
  int Create(const RANGE<int>& /*wanted*/) override { return ARRAY_BAD_RANGE; }
  int CreateRaw(const RANGE<int>& /*wanted*/) override { return ARRAY_BAD_RANGE; }
  /// Drops the view.
  void Delete() override { this->Reset(); }
  /// Takes the range for the elements from the view's first one on; allocates nothing. The caller
  /// sees to it that the viewed array holds that many.
  int Resize(const RANGE<int>& wanted) override {
    if (wanted.Count() < 0) return ARRAY_BAD_RANGE;
    this->range = wanted;
    return ARRAY_OK;
  }
  /// Changes the first index and keeps the count.
  virtual void SetFirstIndex(int index) { this->range.first = index; }
  /// Views `array` from its element at position `offset` on, with the given range.
  virtual void Attach(const ARRAY<X>& array, const RANGE<int>& wanted, int offset) {
    X* first = array.GetElementBase(0);
    this->data = first != nullptr ? first + offset : nullptr;
    Resize(wanted);
  }
};

}  // namespace varnoth
