#include "foundation/string.hpp"

#include <cstring>
#include <new>
#include <stdexcept>

#include "foundation/errors.hpp"

namespace varnoth {

namespace {

std::unique_ptr<char[]> Allocate(std::size_t size) {
  std::unique_ptr<char[]> memory(new (std::nothrow) char[size]);
  if (memory == nullptr) throw ERROR_NO_MEMORY();
  return memory;
}

}  // namespace

STRING::STRING(const char* source) : STRING(source, source != nullptr ? std::strlen(source) : 0) {}

STRING::STRING(const char* source, std::size_t length) : size(length + 1) {
  if (length == 0) return;
  text = Allocate(size);
  std::memcpy(text.get(), source, length);
  text[length] = '\0';
}

STRING& STRING::operator=(const STRING& other) {
  if (this != &other) *this = other.c_str();
  return *this;
}

STRING& STRING::operator=(const char* source) { return *this = STRING(source); }

STRING& STRING::operator=(STRING&& other) noexcept {
  std::swap(text, other.text);
  std::swap(size, other.size);
  return *this;
}

STRING& STRING::operator+=(const STRING& other) {
  const std::size_t length = Length();
  const std::size_t added = other.Length();
  std::unique_ptr<char[]> joined = Allocate(length + added + 1);
  std::memcpy(joined.get(), c_str(), length);
  std::memcpy(joined.get() + length, other.c_str(), added + 1);
  text = std::move(joined);
  size = length + added + 1;
  return *this;
}

bool STRING::Equals(const STRING& other) const { return std::strcmp(c_str(), other.c_str()) == 0; }

void STRING::CheckIndex(std::size_t index) const {
  if (index > Length()) throw std::out_of_range("subscript greater than string length");
}

char& STRING::operator[](std::size_t index) {
  CheckIndex(index);
  if (text == nullptr) {
    text = Allocate(1);
    text[0] = '\0';
  }
  return text[index];
}

char STRING::operator[](std::size_t index) const {
  CheckIndex(index);
  return c_str()[index];
}

}  // namespace varnoth
