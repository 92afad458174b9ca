#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace varnoth {

/// A text value with exact allocation and deep copy. The text is never a null pointer; a null
/// argument counts as the empty text, which needs no memory. Throws ERROR_NO_MEMORY if an
/// allocation fails.
///
///     const STRING mark = STRING("OK.") + "varnoth";
///     if (mark == "OK.varnoth") std::puts(mark.c_str());
class STRING {
 public:
  STRING() = default;
  STRING(const char* source);  // NOLINT(google-explicit-constructor): a text is a STRING
  /// The `length` characters from `source` on; a null source needs length 0.
  STRING(const char* source, std::size_t length);
  STRING(const STRING& other) : STRING(other.c_str(), other.Length()) {}
  /// Leaves the empty text behind.
  STRING(STRING&& other)
  noexcept : text(std::move(other.text)), size(std::exchange(other.size, 1)) {}
  /// Assignment takes the text up to its terminator.
  STRING& operator=(const STRING& other);
  STRING& operator=(const char* source);
  STRING& operator=(STRING&& other) noexcept;
  ~STRING() = default;

  const char* c_str() const { return text != nullptr ? text.get() : ""; }
  std::size_t Length() const { return size - 1; }
  bool IsEmpty() const { return size == 1; }

  STRING& operator+=(const STRING& other);
  friend STRING operator+(STRING left, const STRING& right) { return left += right; }

  /// Compares the texts up to their terminators.
  friend bool operator==(const STRING& left, const STRING& right) { return left.Equals(right); }

  /// The character at a position from 0 to Length(), where the terminator is. A greater position
  /// throws std::out_of_range ("subscript greater than string length").
  char& operator[](std::size_t index);
  char operator[](std::size_t index) const;

 private:
  bool Equals(const STRING& other) const;
  void CheckIndex(std::size_t index) const;

  std::unique_ptr<char[]> text;  ///< null, or one character, for the empty text
  std::uint64_t size = 1;        ///< length and terminator
};

}  // namespace varnoth
