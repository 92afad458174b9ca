#include "pool/type_table.hpp"

#include <algorithm>
#include <iterator>

namespace varnoth {

namespace {

constexpr TYPE_ROW TYPES[TYPE_COUNT] = {
    {"UNKNOWN"},
    {"BOL"},
    {"BYT", "BYT", "BYT"},
    {"INT_8", "BYT", "INT_8"},
    {"INT_16", "INT_8", "INT_8"},
    {"INT_32", "INT_16", "INT_32"},
    {"INT_64", "INT_32", "INT_64"},
    {"FLT_6"},
    {"FLT_15"},
    {"STR"},
    {"CPL_6"},
    {"CPL_15"},
    {"INT_32_INT_32"},
    {"INT_64_INT_64"},
    {"FLT_6_FLT_6"},
    {"FLT_15_FLT_15"},
    {"IDX_INT_32"},
    {"IDX_FLT_6"},
    {"IDX_FLT_15"},
    {"STR_STR"},
    {"BOL_V"},
    {"BYT_V"},
    {"INT_8_V"},
    {"INT_16_V"},
    {"INT_32_V"},
    {"INT_64_V"},
    {"FLT_6_V"},
    {"FLT_15_V"},
    {"CPL_6_V"},
    {"CPL_15_V"},
    {"STR_V", nullptr, nullptr, CLOSER::LENGTH},
    {"INT_32_INT_32_V", nullptr, nullptr, CLOSER::BRACE},
    {"INT_64_INT_64_V", nullptr, nullptr, CLOSER::BRACE},
    {"FLT_6_FLT_6_V", nullptr, nullptr, CLOSER::BRACE},
    {"FLT_15_FLT_15_V", nullptr, nullptr, CLOSER::BRACE},
    {"IDX_INT_32_V", nullptr, nullptr, CLOSER::BRACE},
    {"IDX_FLT_6_V", nullptr, nullptr, CLOSER::BRACE},
    {"IDX_FLT_15_V", nullptr, nullptr, CLOSER::BRACE},
    {"STR_STR_V", nullptr, nullptr, CLOSER::LENGTH},
    {"BYT_M"},
    {"INT_8_M"},
    {"INT_16_M"},
    {"INT_32_M"},
    {"FLT_6_M"},
    {"FLT_15_M"},
    {"CPL_6_M"},
    {"CPL_15_M"},
    {"STR_M"},
};

}  // namespace

const TYPE_ROW& TypeRow(TYPE_CODE code) { return TYPES[code]; }

TYPE_CODE TypeFromName(std::string_view name) {
  const auto* row = std::find_if(std::begin(TYPES), std::end(TYPES),
                                 [&](const TYPE_ROW& r) { return name == r.name; });
  return row == std::end(TYPES) ? UNKNOWN
                                : static_cast<TYPE_CODE>(std::distance(std::begin(TYPES), row));
}

}  // namespace varnoth
