#include "enumerations/enum_base.hpp"

#include <cxxabi.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "pool/enumeration_entry.hpp"
#include "pool/join_key.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth::BASIC::TYPES {

namespace {

/// A text as the comparison sees it: without separators if it ignores them, in lower case if it
/// ignores case.
std::string Folded(const char* text, TEXT_COMPARISON comparison) {
  std::string folded;
  for (; *text != '\0'; ++text) {
    if (comparison.without_separators && std::strchr(" -_", *text) != nullptr) continue;
    folded += comparison.case_sensitive
                  ? *text
                  : static_cast<char>(std::tolower(static_cast<unsigned char>(*text)));
  }
  return folded;
}

STRING KeyOf(const ENUM_TABLE& table, const char* prefix) {
  return join_key({prefix, table.key_word});
}

/// Name of a class for messages: demangled, without the project's namespace.
STRING ClassName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  if (name == nullptr) throw ERROR_NO_MEMORY();
  constexpr char HOUSE[] = "varnoth::";
  const std::size_t length = sizeof HOUSE - 1;
  return name.get() + (std::strncmp(name.get(), HOUSE, length) == 0 ? length : 0);
}

}  // namespace

const char* ENUM_TABLE::At(std::int32_t id) const {
  if (id < 0 || id > LastId() + 1) throw ERROR_ENUM_BASE_INVALID_ID();
  return id == 0 || id > LastId() ? guard : values[static_cast<std::size_t>(id - 1)];
}

std::int32_t FindId(const ENUM_TABLE& table, const std::type_info& type, const STRING& wanted,
                    TEXT_COMPARISON comparison) {
  const std::string folded = Folded(wanted.c_str(), comparison);
  const auto matches = [&](const char* text) { return Folded(text, comparison) == folded; };
  // A guard without its separators would be the empty text.
  const std::int32_t beyond = table.guards_match && !comparison.without_separators ? 1 : 0;
  for (std::int32_t id = 1 - beyond; id <= table.LastId() + beyond; ++id) {
    if (matches(table.At(id))) return id;
  }
  for (const ENUM_ALIAS& alias : table.aliases) {
    if (matches(alias.text)) return alias.id;
  }
  throw ERROR_ENUM_BASE_INVALID_VALUE(wanted, ClassName(type), ValidValues(table.values));
}

bool ENUM_BASE::operator==(const ENUM_BASE& other) const {
  if (typeid(*this) != typeid(other)) throw ERROR_ENUM_BASE_TYPE_MISMATCH();
  return id == other.id;
}

bool ENUM_BASE::operator!=(const ENUM_BASE& other) const { return !(*this == other); }

ENUM_BASE& ENUM_BASE::operator++() {
  if (id > LastId()) throw ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED();
  const std::int32_t next = id + 1;
  FromId(next, true);
  id = next;
  return *this;
}

ENUM_BASE& ENUM_BASE::operator--() {
  if (id <= 0) throw ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED();
  const std::int32_t next = id - 1;
  FromId(next, true);
  id = next;
  return *this;
}

const ENUM_BASE& ENUM_BASE::operator++(int) {
  const std::int32_t old = id;
  ++*this;
  return FromId(old, false);
}

const ENUM_BASE& ENUM_BASE::operator--(int) {
  const std::int32_t old = id;
  --*this;
  return FromId(old, false);
}

const ENUM_BASE& ENUM_BASE::FromId(std::int32_t /*wanted*/, bool /*assign*/) { return *this; }

void ENUM_BASE::ReadFromPool(PARAMETER_POOL& pool, const char* prefix) {
  const STRING key = KeyOf(Table(), prefix);
  STRING value;
  pool.Read(key.c_str(), value);
  try {
    Set(value);
  } catch (const ERROR_ENUM_BASE_INVALID_VALUE& error) {
    LogInvalidText(pool, key.c_str(), value, error.valid_values);
    throw;
  }
}

void ENUM_BASE::WriteToPool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, const char* prefix) const {
  pool.Change(KeyOf(Table(), prefix).c_str(), text);
}

void ENUM_BASE::ReadCheckedFromPool(PARAMETER_POOL& pool, const char* prefix) {
  STRING value;
  ReadEnumeration(pool, KeyOf(Table(), prefix).c_str(), Table().values, value);
  Set(value, true);
}

STRING ENUM_BASE::GetAlias(const ENUM_BASE& object, int n) const {
  if (typeid(*this) != typeid(object)) throw ERROR_ENUM_BASE_TYPE_MISMATCH();
  int passed = 0;
  for (const ENUM_ALIAS& alias : Table().aliases) {
    if (alias.id == object.id && passed++ == n) return alias.text;
  }
  return Table().At(object.id);
}

void ENUM_BASE::Set(const STRING& wanted, bool case_sensitive) {
  FromId(FindId(Table(), typeid(*this), wanted, {case_sensitive, false}), true);
}

void ENUM_BASE::SetTolerant(const STRING& wanted, bool case_sensitive) {
  FromId(FindId(Table(), typeid(*this), wanted, {case_sensitive, true}), true);
}

const ENUM_TABLE& ENUM_BASE::Table() const {
  static constexpr ENUM_TABLE empty{};
  return empty;
}

}  // namespace varnoth::BASIC::TYPES
