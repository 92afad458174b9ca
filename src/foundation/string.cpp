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

STRING::STRING(const char* source, std::size_t length)
    : text(Allocate(length + 1)), size(length + 1) {
  if (length > 0) std::memcpy(text.get(), source, length);
  text[length] = '\0';
}

STRING& STRING::operator=(const STRING& other) {
  if (this != &other) *this = other.c_str();
  return *this;
}

STRING& STRING::operator=(const char* source) {
  STRING copy(source);
  text.swap(copy.text);
  size = copy.size;
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
  return text[index];
}

char STRING::operator[](std::size_t index) const {
  CheckIndex(index);
  return text[index];
}

}  // namespace varnoth
