#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace varnoth {

/// A text value with exact allocation and deep copy. The text is never a null pointer; a null text
/// given to an operation counts as the empty text. A failed allocation throws ERROR_NO_MEMORY.
class STRING {
 public:
  STRING() : STRING("") {}
  STRING(const char* source);  // NOLINT(google-explicit-constructor): a text is a STRING
  STRING(const char* source, std::size_t length);
  STRING(const STRING& other) : STRING(other.c_str(), other.Length()) {}
  STRING& operator=(const STRING& other);
  STRING& operator=(const char* source);
  ~STRING() = default;

  const char* c_str() const { return text.get(); }
  std::size_t Length() const { return size - 1; }
  bool IsEmpty() const { return size == 1; }

  STRING& operator+=(const STRING& other);
  friend STRING operator+(STRING left, const STRING& right) { return left += right; }

  /// Comparison of the texts up to their terminators.
  friend bool operator==(const STRING& left, const STRING& right) { return left.Equals(right); }

  /// Character at a position, 0 up to and including Length() (the terminator). Throws
  /// std::out_of_range ("subscript greater than string length") beyond it.
  char& operator[](std::size_t index);
  char operator[](std::size_t index) const;

 private:
  bool Equals(const STRING& other) const;
  void CheckIndex(std::size_t index) const;

  std::unique_ptr<char[]> text;
  std::uint64_t size = 1;  ///< length and terminator
};

}  // namespace varnoth
