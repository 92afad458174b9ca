#pragma once

#include <array>
#include <memory>
#include <span>

#include "orbit/orbit_base.hpp"

namespace varnoth {

/// The catalogue of orbits: every orbit type with every interpolation is a concrete class.
///
/// A new interpolation is a file catalogue_<name>.cpp, which instantiates its classes, its id here,
/// and a line in catalogue_rows.hpp and in catalogue.cpp.
using ORBIT_FACTORY = std::unique_ptr<ORBIT_BASE> (*)();

/// An orbit type: where the samples come from, their precision, and their kind of time.
struct ORBIT_TYPE {
  int id;
  const char* text;
};
inline constexpr int ORBIT_TYPE_COUNT = 9;

/// An interpolation with a factory per orbit type, in the order of the types.
struct INTERPOLATION_TYPE {
  int id;
  const char* text;
  std::array<ORBIT_FACTORY, ORBIT_TYPE_COUNT> factories;
};

/// The ids that code asks for.
enum ORBIT_TYPE_ID : int {
  ORBIT_POOL_FLOAT_DOUBLE = 1,
  ORBIT_MDB_DOUBLE_DOUBLE = 7,
  ORBIT_MDB_DOUBLE_MET = 9,
};
enum INTERPOLATION_ID : int {
  POLYNOM_ID = 0,
  POLYFIT_ID = 1,
  SPLINE_ID = 2,
  LOCALPOLYNOM_ID = 3,
  LOCALPOLYFIT_ID = 4,
  CHEBYSHEV_ID = 5,
  LOCALCHEBYSHEV_ID = 6,
  HERMITE_ID = 7,
  LOCALHERMITE_ID = 8,
  EVERETT_ID = 9,
};

/// The orbit types and the interpolations, in the order of their ids.
std::span<const ORBIT_TYPE> OrbitTypes();
std::span<const INTERPOLATION_TYPE* const> Interpolations();

/// Factory of a pair of ids; null for ids that are in no row.
ORBIT_FACTORY FindOrbitFactory(int orbit_type_id, int interpolation_id);

}  // namespace varnoth
