#pragma once

#include <array>
#include <memory>
#include <span>

#include "orbit/orbit_base.hpp"

namespace varnoth {

/// The catalogue of orbits: every orbit type with every interpolation is a concrete class.
///
/// A new interpolation needs a file catalogue_<name>.cpp, which instantiates its classes, and a
/// line in the list below.
using ORBIT_FACTORY = std::unique_ptr<ORBIT_BASE> (*)();

/// An orbit type: where the samples come from, their precision, and their kind of time.
struct ORBIT_TYPE {
  int id;
  const char* text;
};
inline constexpr int ORBIT_TYPE_COUNT = 9;

/// The interpolations in the order of their ids: name in the code and name in pools. The factories
/// of each, NAME_ORBITS, are in a file catalogue_<name>.cpp.
#define VARNOTH_INTERPOLATIONS(ROW)     \
  ROW(POLYNOM, "polynom")               \
  ROW(POLYFIT, "polyfit")               \
  ROW(SPLINE, "spline")                 \
  ROW(LOCALPOLYNOM, "localpolynom")     \
  ROW(LOCALPOLYFIT, "localpolyfit")     \
  ROW(CHEBYSHEV, "chebyshev")           \
  ROW(LOCALCHEBYSHEV, "localchebyshev") \
  ROW(HERMITE, "hermite")               \
  ROW(LOCALHERMITE, "localhermite")     \
  ROW(EVERETT, "everett")

/// Factories of an interpolation, in the order of the orbit types.
using ORBIT_FACTORIES = std::array<ORBIT_FACTORY, ORBIT_TYPE_COUNT>;

struct INTERPOLATION_TYPE {
  int id;
  const char* text;
  const ORBIT_FACTORIES* factories;
};

/// The ids that the code uses.
enum ORBIT_TYPE_ID : int {
  ORBIT_POOL_FLOAT_DOUBLE = 1,
  ORBIT_MDB_DOUBLE_DOUBLE = 7,
  ORBIT_MDB_DOUBLE_MET = 9,
};
#define VARNOTH_ID(NAME, TEXT) NAME##_ID,
enum INTERPOLATION_ID : int { VARNOTH_INTERPOLATIONS(VARNOTH_ID) };
#undef VARNOTH_ID

/// The orbit types and the interpolations, in the order of their ids.
std::span<const ORBIT_TYPE> OrbitTypes();
std::span<const INTERPOLATION_TYPE> Interpolations();

/// Factory for a pair of ids; null if either id is in no row.
ORBIT_FACTORY FindOrbitFactory(int orbit_type_id, int interpolation_id);

}  // namespace varnoth
