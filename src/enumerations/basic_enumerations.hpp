#pragma once

#include "enumerations/enum_base.hpp"

namespace varnoth::BASIC::TYPES {

/// The kind of a parameter pool.
///
///     const PoolType type("CFG");
///     const DataType data("flt_15");
class PoolType : public ENUM<PoolType> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "pool_type";
  static constexpr const char* VALUES[] = {"PPOOL", "IIP", "TSC", "CFG", "ORDER", "GEOCODING"};
};

/// The element type of image data.
class DataType : public ENUM<DataType> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "data_type";
  static constexpr const char* VALUES[] = {
      "int_8",      "int_16",   "int_32",   "int_64",    "u_int_8",   "u_int_16",   "u_int_32",
      "u_int_64",   "flt_2",    "flt_6",    "flt_15",    "flt_30",    "c_int_4",    "c_int_8",
      "c_int_16",   "c_int_32", "c_int_64", "c_u_int_4", "c_u_int_8", "c_u_int_16", "c_u_int_32",
      "c_u_int_64", "c_flt_2",  "c_flt_6",  "c_flt_15",  "c_flt_30",  "rgb",        "others"};
};

}  // namespace varnoth::BASIC::TYPES
