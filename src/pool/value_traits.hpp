#pragma once

#include "foundation/array.hpp"
#include "foundation/complex.hpp"
#include "foundation/matrix.hpp"
#include "foundation/pairs.hpp"
#include "foundation/string.hpp"
#include "pool/type_table.hpp"

namespace varnoth {

/// Ties the in-memory type of one element to its rows of the type table: as a scalar, as an element
/// of a vector, and as an element of a matrix (UNKNOWN if no such entry exists).
///
///     static_assert(POOL_ELEMENT<double>::SCALAR == FLT_15);
///     static_assert(POOL_TYPE<ARRAY<double>> == FLT_15_V);
template <class X>
struct POOL_ELEMENT {
  static constexpr TYPE_CODE SCALAR = UNKNOWN;
};

template <TYPE_CODE SCALAR_CODE, TYPE_CODE VECTOR_CODE, TYPE_CODE MATRIX_CODE = UNKNOWN>
struct POOL_ELEMENT_CODES {
  static constexpr TYPE_CODE SCALAR = SCALAR_CODE;
  static constexpr TYPE_CODE VECTOR = VECTOR_CODE;
  static constexpr TYPE_CODE MATRIX = MATRIX_CODE;
};

static_assert(static_cast<char>(-1) < 0, "INT_8 is kept in a char");

// clang-format off
template <> struct POOL_ELEMENT<bool> : POOL_ELEMENT_CODES<BOL, BOL_V> {};
template <> struct POOL_ELEMENT<unsigned char> : POOL_ELEMENT_CODES<BYT, BYT_V, BYT_M> {};
template <> struct POOL_ELEMENT<char> : POOL_ELEMENT_CODES<INT_8, INT_8_V, INT_8_M> {};
template <> struct POOL_ELEMENT<short> : POOL_ELEMENT_CODES<INT_16, INT_16_V, INT_16_M> {};
template <> struct POOL_ELEMENT<int> : POOL_ELEMENT_CODES<INT_32, INT_32_V, INT_32_M> {};
template <> struct POOL_ELEMENT<long long> : POOL_ELEMENT_CODES<INT_64, INT_64_V> {};
template <> struct POOL_ELEMENT<float> : POOL_ELEMENT_CODES<FLT_6, FLT_6_V, FLT_6_M> {};
template <> struct POOL_ELEMENT<double> : POOL_ELEMENT_CODES<FLT_15, FLT_15_V, FLT_15_M> {};
template <> struct POOL_ELEMENT<STRING> : POOL_ELEMENT_CODES<STR, STR_V, STR_M> {};
template <> struct POOL_ELEMENT<COMPLEX<float>> : POOL_ELEMENT_CODES<CPL_6, CPL_6_V, CPL_6_M> {};
template <> struct POOL_ELEMENT<COMPLEX<double>> : POOL_ELEMENT_CODES<CPL_15, CPL_15_V, CPL_15_M> {};
template <> struct POOL_ELEMENT<POINT<int>> : POOL_ELEMENT_CODES<INT_32_INT_32, INT_32_INT_32_V> {};
template <> struct POOL_ELEMENT<RANGE<int>> : POOL_ELEMENT_CODES<INT_32_INT_32, INT_32_INT_32_V> {};
template <> struct POOL_ELEMENT<POINT<long long>> : POOL_ELEMENT_CODES<INT_64_INT_64, INT_64_INT_64_V> {};
template <> struct POOL_ELEMENT<POINT<float>> : POOL_ELEMENT_CODES<FLT_6_FLT_6, FLT_6_FLT_6_V> {};
template <> struct POOL_ELEMENT<RANGE<float>> : POOL_ELEMENT_CODES<FLT_6_FLT_6, FLT_6_FLT_6_V> {};
template <> struct POOL_ELEMENT<POINT<double>> : POOL_ELEMENT_CODES<FLT_15_FLT_15, FLT_15_FLT_15_V> {};
template <> struct POOL_ELEMENT<RANGE<double>> : POOL_ELEMENT_CODES<FLT_15_FLT_15, FLT_15_FLT_15_V> {};
template <> struct POOL_ELEMENT<INDEX<int, int>> : POOL_ELEMENT_CODES<IDX_INT_32, IDX_INT_32_V> {};
template <> struct POOL_ELEMENT<INDEX<int, float>> : POOL_ELEMENT_CODES<IDX_FLT_6, IDX_FLT_6_V> {};
template <> struct POOL_ELEMENT<INDEX<int, double>> : POOL_ELEMENT_CODES<IDX_FLT_15, IDX_FLT_15_V> {};
template <> struct POOL_ELEMENT<TUPLE<STRING>> : POOL_ELEMENT_CODES<STR_STR, STR_STR_V> {};

/// Calls a macro for the in-memory type of every scalar and vector element.
#define VARNOTH_POOL_ELEMENTS(APPLY)                                                  \
  APPLY(bool) APPLY(unsigned char) APPLY(char) APPLY(short) APPLY(int)                \
  APPLY(long long) APPLY(float) APPLY(double) APPLY(STRING) APPLY(COMPLEX<float>)     \
  APPLY(COMPLEX<double>) APPLY(POINT<int>) APPLY(RANGE<int>) APPLY(POINT<long long>)  \
  APPLY(POINT<float>) APPLY(RANGE<float>) APPLY(POINT<double>) APPLY(RANGE<double>)   \
  APPLY(INDEX<int, int>) APPLY(INDEX<int, float>) APPLY(INDEX<int, double>)           \
  APPLY(TUPLE<STRING>)

/// Calls a macro for the in-memory type of every matrix element.
#define VARNOTH_POOL_MATRIX_ELEMENTS(APPLY)                                           \
  APPLY(unsigned char) APPLY(char) APPLY(short) APPLY(int) APPLY(float) APPLY(double) \
  APPLY(COMPLEX<float>) APPLY(COMPLEX<double>) APPLY(STRING)
// clang-format on

/// The in-memory types of scalar entries.
template <class X>
concept POOL_SCALAR = POOL_ELEMENT<X>::SCALAR != UNKNOWN;

/// Type code of a whole value: a scalar, an ARRAY or a MATRIX of elements. UNKNOWN if there is
/// none.
template <class V>
inline constexpr TYPE_CODE POOL_TYPE = POOL_ELEMENT<V>::SCALAR;
template <class X>
inline constexpr TYPE_CODE POOL_TYPE<ARRAY<X>> = POOL_ELEMENT<X>::VECTOR;
template <class X>
inline constexpr TYPE_CODE POOL_TYPE<MATRIX<X>> = POOL_ELEMENT<X>::MATRIX;

}  // namespace varnoth
