#pragma once

#include "orbit/internal/catalogue.hpp"
#include "orbit/internal/mdb_orbit_definitions.hpp"
#include "orbit/internal/pool_orbit_definitions.hpp"

namespace varnoth {

template <class CONCRETE_ORBIT>
std::unique_ptr<ORBIT_BASE> MakeOrbit() {
  return std::make_unique<CONCRETE_ORBIT>();
}

/// Factories of an interpolation whose nine orbit types are all pool orbits: record files hold no
/// velocities, and nobody needs Chebyshev series from them.
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

/// Factories of an interpolation with six pool orbits and three record file orbits.
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

#define VARNOTH_FACTORIES(NAME, TEXT) extern const ORBIT_FACTORIES NAME##_ORBITS;
VARNOTH_INTERPOLATIONS(VARNOTH_FACTORIES)
#undef VARNOTH_FACTORIES

}  // namespace varnoth
