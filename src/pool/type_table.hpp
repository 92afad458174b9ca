#pragma once

#include <string_view>

namespace varnoth {

// clang-format off
/// Type codes of pool entries. The program uses the numbers; files use the names.
///
///     const TYPE_CODE code = TypeFromName("FLT_15_V");
///     const char* name = TypeRow(code).name;
enum TYPE_CODE : unsigned {
  UNKNOWN, BOL, BYT, INT_8, INT_16, INT_32, INT_64, FLT_6, FLT_15, STR, CPL_6, CPL_15,
  INT_32_INT_32, INT_64_INT_64, FLT_6_FLT_6, FLT_15_FLT_15, IDX_INT_32, IDX_FLT_6, IDX_FLT_15,
  STR_STR,
  BOL_V, BYT_V, INT_8_V, INT_16_V, INT_32_V, INT_64_V, FLT_6_V, FLT_15_V, CPL_6_V, CPL_15_V, STR_V,
  INT_32_INT_32_V, INT_64_INT_64_V, FLT_6_FLT_6_V, FLT_15_FLT_15_V, IDX_INT_32_V, IDX_FLT_6_V,
  IDX_FLT_15_V, STR_STR_V,
  BYT_M, INT_8_M, INT_16_M, INT_32_M, FLT_6_M, FLT_15_M, CPL_6_M, CPL_15_M, STR_M,
  TYPE_COUNT
};
// clang-format on

/// The closing line that a vector's block accepts.
enum class CLOSER {
  ANY,     ///< any token
  BRACE,   ///< exactly "}"
  LENGTH,  ///< exactly "}"; the reader reports anything else as a wrong length
};

/// A row of the type table. The two words are those of the integers' messages. Some of them are off
/// by one row; users search for these messages, so they stay as they are.
struct TYPE_ROW {
  const char* name;
  const char* floating_word = nullptr;   ///< in the message on a floating point token
  const char* character_word = nullptr;  ///< in the message on a character that no number has
  CLOSER closer = CLOSER::ANY;
};

/// Row of a type code, which must be below TYPE_COUNT.
const TYPE_ROW& TypeRow(TYPE_CODE code);

/// Code of a type name (exact, case-sensitive); UNKNOWN for any other text.
TYPE_CODE TypeFromName(std::string_view name);

}  // namespace varnoth
