#include "records/record_item.hpp"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "foundation/errors.hpp"
#include "foundation/scan_number.hpp"
#include "log/log.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth {

namespace {

[[noreturn]] void ThrowUnknownType() { throw "MDB: RECORD_ITEM: unknown type"; }

/// The value of a text that must be a number from the first to the last character.
template <class NUMBER>
NUMBER ParseNumber(const char* text) {
  const HELD_TRAPS held;
  NUMBER value{};
  // from_chars does not read a plus sign.
  const char* const digits = text[0] == '+' && text[1] != '-' ? text + 1 : text;
  const char* const end = digits + std::strlen(digits);
  const auto [stop, error] = ScanNumber(digits, end, value);
  if (error != std::errc() || stop != end) {
    GlobalLog.set(ALARM) << "MDB: RECORD_ITEM: >>" << text << "<< is no number\n";
    throw ERROR_DATA();
  }
  return value;
}

bool IsNumber(int type) { return type == RECORD_INT || type == RECORD_DOUBLE; }

double NumberOf(const RECORD_ITEM& item) {
  return item.type == RECORD_INT ? item.integer : item.number;
}

/// The type for a comparison of two items.
int CommonType(const RECORD_ITEM& a, const RECORD_ITEM& b) {
  if (IsNumber(a.type) && IsNumber(b.type)) return RECORD_DOUBLE;
  if (a.type != b.type) ThrowUnknownType();
  return a.type;
}

}  // namespace

int RecordItemType(const STRING& word) {
  constexpr const char* WORDS[] = {"int", "double", "met", "utc"};
  int type = RECORD_INT;
  for (const char* candidate : WORDS) {
    if (word == candidate) return type;
    ++type;
  }
  return 0;
}

void RECORD_ITEM::Parse(const char* text) {
  const bool has_colon = std::strchr(text, ':') != nullptr;
  if (has_colon && std::strchr(text, '-') != nullptr) {
    utc = UNIVERSAL_TIME(text);
    type = RECORD_UTC;
  } else if (has_colon) {
    met = MISSION_ELAPSED_TIME(text);
    type = RECORD_MET;
  } else if (std::strchr(text, '.') != nullptr) {
    number = ParseNumber<double>(text);
    type = RECORD_DOUBLE;
  } else {
    integer = ParseNumber<int>(text);
    type = RECORD_INT;
  }
}

STRING RECORD_ITEM::Text() const {
  char text[64];
  switch (type) {
    case RECORD_INT:
      std::snprintf(text, sizeof text, "%d", integer);
      return text;
    case RECORD_DOUBLE:
      std::snprintf(text, sizeof text, "% .16e", number);
      return text;
    case RECORD_MET:
      return met.c_str();
    case RECORD_UTC:
      return utc.c_str();
    default:
      ThrowUnknownType();
  }
}

double RECORD_ITEM::ToDouble() const {
  switch (type) {
    case RECORD_INT:
      return integer;
    case RECORD_DOUBLE:
      return number;
    case RECORD_MET:
      throw "can not cast from MET to double";
    case RECORD_UTC:
      throw "can not cast from UTC to double";
    case RECORD_DURATION:
      return duration.ToSeconds();
    default:
      ThrowUnknownType();
  }
}

bool RECORD_ITEM::Equals(const RECORD_ITEM& other) const {
  switch (CommonType(*this, other)) {
    case RECORD_DOUBLE:
      return NumberOf(*this) == NumberOf(other);
    case RECORD_MET:
      return met == other.met;
    case RECORD_UTC:
      return utc == other.utc;
    case RECORD_DURATION:
      return duration.ToExtendedSeconds() == other.duration.ToExtendedSeconds();
    default:
      ThrowUnknownType();
  }
}

bool RECORD_ITEM::IsAtOrAfter(const RECORD_ITEM& wanted) const {
  switch (CommonType(*this, wanted)) {
    case RECORD_DOUBLE:
      return std::isgreaterequal(NumberOf(*this), NumberOf(wanted));
    case RECORD_MET:
      return met == wanted.met || wanted.met < met;
    case RECORD_UTC:
      return utc >= wanted.utc;
    case RECORD_DURATION:
      return duration.ToExtendedSeconds() >= wanted.duration.ToExtendedSeconds();
    default:
      ThrowUnknownType();
  }
}

long double RECORD_ITEM::DistanceFrom(const RECORD_ITEM& origin) const {
  switch (CommonType(*this, origin)) {
    case RECORD_DOUBLE:
      return static_cast<long double>(NumberOf(*this)) - NumberOf(origin);
    case RECORD_MET:
      return (met - origin.met).ToExtendedSeconds();
    case RECORD_UTC:
      return (utc - origin.utc).ToExtendedSeconds();
    case RECORD_DURATION:
      return duration.ToExtendedSeconds() - origin.duration.ToExtendedSeconds();
    default:
      ThrowUnknownType();
  }
}

}  // namespace varnoth
