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

/// What the sizing operations of ARRAY return. ARRAY_BAD_RANGE stands for a negative count and for
/// a last index that a loop could not count past.
enum ARRAY_RESULT : int { ARRAY_OK = 0, ARRAY_NO_MEMORY = 2, ARRAY_BAD_RANGE = 3 };

template <class X>
class SUB_ARRAY;

/// An array with a free first index, which is part of its value: `GetBase()[i]` is element i, with
/// i from `GetFirstIndex()` to `GetLastIndex()`. Copies are deep. Element access is not checked.
///
///     ARRAY<double> height(1, 3);  // elements 1, 2, 3
///     std::fill(height.begin(), height.end(), 0.0);
///     height.GetBase()[3] = 120.0;
///     height.NeedRange(RANGE<int>(1, 5));  // keeps the three; elements 4 and 5 are undefined
///
/// Throws the text "ARRAY : can not copy array" if it can't make a copy. What an element's own
/// constructor throws passes through.
template <class X>
class ARRAY {
 public:
  ARRAY() = default;
  /// `count` elements from index `first`; those of plain types are undefined. Throws like a copy.
  ARRAY(int first, int count) {
    if (Make(RANGE<int>(first, count), false) != ARRAY_OK) throw "ARRAY : can not copy array";
  }
  ARRAY(const ARRAY& other) : ARRAY() {
    if (Make(other.range, false) != ARRAY_OK) throw "ARRAY : can not copy array";
    std::copy_n(other.data, other.range.Count(), data);
  }
  ARRAY(ARRAY&& other) noexcept : ARRAY() { Swap(other); }
  ARRAY& operator=(ARRAY&& other) noexcept {
    Swap(other);
    return *this;
  }
  /// A view's elements are not its own to give: these copy them.
  ARRAY(SUB_ARRAY<X>&& view)  // NOLINT(google-explicit-constructor): as a move
  : ARRAY(std::as_const(view)) {}
  ARRAY& operator=(SUB_ARRAY<X>&& view) { return *this = std::as_const(view); }
  ARRAY& operator=(const ARRAY& other) {
    if (this == &other) return *this;
    if (Resize(other.range) != ARRAY_OK) throw "ARRAY : can not copy array";
    std::copy_n(other.data, other.range.Count(), data);
    return *this;
  }

  /// A list of 1 to 21 texts from index 0. Null texts at the end don't count; other null texts are
  /// empty. Throws ERROR_NO_MEMORY.
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
  /// Allocates the range, constructs its elements and releases the former content. Returns
  /// ARRAY_OK, or else ARRAY_NO_MEMORY or ARRAY_BAD_RANGE, with the array as it was.
  virtual int Create(const RANGE<int>& wanted) { return Make(wanted, false); }
  /// The same, but neither constructs the elements nor destroys them later.
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
  /// Pointer p such that p[index] is the array's first element; null for an empty array.
  virtual X* GetElementBase(int index) const { return data != nullptr ? data - index : nullptr; }
  /// Pointer p such that p[i] is element i of the array; null for an empty array.
  virtual X* GetBase() const { return GetElementBase(range.First()); }
  /// The elements in their order, whatever the first index is: `for (X& x : array)`.
  X* begin() { return data; }
  X* end() { return data + range.Count(); }
  const X* begin() const { return data; }
  const X* end() const { return data + range.Count(); }
  std::size_t size() const { return static_cast<std::size_t>(range.Count()); }
  /// Changes the range. Elements keep their positions, not their indices; a smaller count drops the
  /// last ones. Costs nothing if the range is the same. Returns what `Create` returns.
  virtual int Resize(const RANGE<int>& wanted) {
    if (wanted == range) return ARRAY_OK;
    if (!IsValid(wanted)) return ARRAY_BAD_RANGE;
    ARRAY resized;
    const int result = resized.Make(wanted, false);
    if (result != ARRAY_OK) return result;
    std::copy_n(data, std::min(range.Count(), wanted.Count()), resized.data);
    Swap(resized);
    return ARRAY_OK;
  }
  /// Like `Resize`, but throws `failure`, ERROR_NO_MEMORY by default, if that fails.
  template <class FAILURE = ERROR_NO_MEMORY>
  void NeedRange(const RANGE<int>& wanted, FAILURE failure = {}) {
    if (Resize(wanted) != ARRAY_OK) throw failure;
  }

 protected:
  RANGE<int> range;
  X* data = nullptr;
  bool raw = false;

 private:
  void Swap(ARRAY& other) {
    std::swap(range, other.range);
    std::swap(data, other.data);
    std::swap(raw, other.raw);
  }
  /// Whether the count isn't negative and the last index leaves room for a loop to count past it.
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

/// A view of a part of an ARRAY; it owns no elements and must not outlive the array's memory.
///
///     SUB_ARRAY<double> tail;
///     tail.Attach(height, RANGE<int>(0, 2), 1);  // tail's element 0 is height's second one
template <class X>
class SUB_ARRAY : public ARRAY<X> {
 public:
  SUB_ARRAY() = default;
  /// Another view on the same elements.
  SUB_ARRAY(const SUB_ARRAY& other) : ARRAY<X>() {
    this->data = other.data;
    this->range = other.range;
  }
  /// Never call it: it could mean the view or its elements. Logs at ALARM and throws
  /// ERROR_NOT_IMPLEMENTED. Use `Attach`.
  SUB_ARRAY& operator=(const SUB_ARRAY& /*other*/) { FailSubArrayAssignment(); }
  ~SUB_ARRAY() override { this->data = nullptr; }

  /// A view makes no elements: both return ARRAY_BAD_RANGE and change nothing.
  int Create(const RANGE<int>& /*wanted*/) override { return ARRAY_BAD_RANGE; }
  int CreateRaw(const RANGE<int>& /*wanted*/) override { return ARRAY_BAD_RANGE; }
  /// Drops the view.
  void Delete() override { this->Reset(); }
  /// Sets the range, which now covers the elements from the view's first one on. Allocates nothing:
  /// the caller makes sure that the viewed array holds that many elements. Returns ARRAY_BAD_RANGE
  /// for a negative count.
  int Resize(const RANGE<int>& wanted) override {
    if (wanted.Count() < 0) return ARRAY_BAD_RANGE;
    this->range = wanted;
    return ARRAY_OK;
  }
  /// Changes the first index and keeps the count.
  virtual void SetFirstIndex(int index) { this->range.first = index; }
  /// Views `array` under the given range, from the element at position `offset` on; position 0 is
  /// the first element.
  virtual void Attach(const ARRAY<X>& array, const RANGE<int>& wanted, int offset) {
    X* first = array.GetElementBase(0);
    this->data = first != nullptr ? first + offset : nullptr;
    Resize(wanted);
  }
};

}  // namespace varnoth
