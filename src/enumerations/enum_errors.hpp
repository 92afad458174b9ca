#pragma once

#include <utility>

#include "foundation/errors.hpp"
#include "foundation/string.hpp"

namespace varnoth::BASIC::TYPES {

/// The failures of enumerations:
///
///     try {
///       edge.Set("diagonal");
///     } catch (const ERROR_ENUM_BASE& error) {
///       std::puts(error.what());
///     }
VARNOTH_ERROR(ERROR_ENUM_BASE, ERROR_EXCEPTION, "enumeration data type error");
VARNOTH_ERROR(ERROR_ENUM_BASE_TYPE_MISMATCH, ERROR_ENUM_BASE,
              "enumeration data type - type mismatch");
VARNOTH_ERROR(ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED, ERROR_ENUM_BASE,
              "enumeration data type - limit of enumeration expired");
VARNOTH_ERROR(ERROR_ENUM_BASE_INVALID_ID, ERROR_ENUM_BASE, "enumeration data type - invalid id");

/// A text that is no value of the enumeration. No other failure has data of its own.
class ERROR_ENUM_BASE_INVALID_VALUE : public ERROR_ENUM_BASE {
 public:
  ERROR_ENUM_BASE_INVALID_VALUE(STRING offending, STRING enumeration, STRING valid)
      : value(std::move(offending)),
        class_name(std::move(enumeration)),
        valid_values(std::move(valid)),
        text(STRING("enumeration data type - invalid value of class ") + class_name + ": " +
             value) {}
  const char* what() const noexcept override { return text.c_str(); }

  STRING value;
  STRING class_name;    ///< of the enumeration
  STRING valid_values;  ///< "Valid values are: " and the legal values

 private:
  STRING text;
};

}  // namespace varnoth::BASIC::TYPES
