#pragma once

#include "orbit/internal/catalogue.hpp"
#include "orbit/internal/mdb_orbit_definitions.hpp"
#include "orbit/internal/pool_orbit_definitions.hpp"

namespace varnoth {

using ORBIT_FACTORIES = std::array<ORBIT_FACTORY, ORBIT_TYPE_COUNT>;

template <class CONCRETE_ORBIT>
std::unique_ptr<ORBIT_BASE> MakeOrbit() {
  return std::make_unique<CONCRETE_ORBIT>();
}

/// Factories of an interpolation whose nine orbit types all are pool orbits: a record file holds no
/// velocities, nor has anybody asked for Chebyshev series from one.
template <template <class> class INTERPOLATOR, template <class> class SUPPORT_POINT>
constexpr ORBIT_FACTORIES PoolOrbitFactories() {
  using IF = INTERPOLATOR<float>;
  using ID = INTERPOLATOR<double>;
  using PF = SUPPORT_POINT<float>;
  using PD = SUPPORT_POINT<double>;
  constexpr ORBIT_FACTORY SECONDS = MakeOrbit<POOL_ORBIT<double, double, ID, PD>>;
  constexpr ORBIT_FACTORY UTC = MakeOrbit<POOL_ORBIT<double, UNIVERSAL_TIME, ID, PD>>;
  constexpr ORBIT_FACTORY MET = MakeOrbit<POOL_ORBIT<double, MISSION_ELAPSED_TIME, ID, PD>>;
  return {MakeOrbit<POOL_ORBIT<float, double, IF, PF>>,
          MakeOrbit<POOL_ORBIT<float, UNIVERSAL_TIME, IF, PF>>,
          MakeOrbit<POOL_ORBIT<float, MISSION_ELAPSED_TIME, IF, PF>>,
          SECONDS,
          UTC,
          MET,
          SECONDS,
          UTC,
          MET};
}

/// Factories of an interpolation with six pool orbits and three of record files.
template <template <class> class INTERPOLATOR>
constexpr ORBIT_FACTORIES PoolAndRecordOrbitFactories() {
  using I = INTERPOLATOR<double>;
  using P = POINT<double>;
  ORBIT_FACTORIES factories = PoolOrbitFactories<INTERPOLATOR, POINT>();
  factories[ORBIT_TYPE_COUNT - 3] = MakeOrbit<MDB_ORBIT<double, double, I, P>>;
  factories[ORBIT_TYPE_COUNT - 2] = MakeOrbit<MDB_ORBIT<double, UNIVERSAL_TIME, I, P>>;
  factories[ORBIT_TYPE_COUNT - 1] = MakeOrbit<MDB_ORBIT<double, MISSION_ELAPSED_TIME, I, P>>;
  return factories;
}

extern const INTERPOLATION_TYPE POLYNOM_ORBITS;
extern const INTERPOLATION_TYPE POLYFIT_ORBITS;
extern const INTERPOLATION_TYPE SPLINE_ORBITS;
extern const INTERPOLATION_TYPE LOCALPOLYNOM_ORBITS;
extern const INTERPOLATION_TYPE LOCALPOLYFIT_ORBITS;
extern const INTERPOLATION_TYPE CHEBYSHEV_ORBITS;
extern const INTERPOLATION_TYPE LOCALCHEBYSHEV_ORBITS;
extern const INTERPOLATION_TYPE HERMITE_ORBITS;
extern const INTERPOLATION_TYPE LOCALHERMITE_ORBITS;
extern const INTERPOLATION_TYPE EVERETT_ORBITS;

}  // namespace varnoth
