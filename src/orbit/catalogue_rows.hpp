#pragma once

#include "orbit/catalogue.hpp"
#include "orbit/pool_orbit_definitions.hpp"

namespace varnoth {

template <class CONCRETE_ORBIT>
std::unique_ptr<ORBIT_BASE> MakeOrbit() {
  return std::make_unique<CONCRETE_ORBIT>();
}

/// Factories of an interpolation over the six pool orbit types. For the three record-file types
/// there is a pool orbit of the same kind of time where `record_files_are_pools`, else nothing.
template <template <class> class INTERPOLATOR, template <class> class SUPPORT_POINT>
constexpr std::array<ORBIT_FACTORY, ORBIT_TYPE_COUNT> PoolOrbitFactories(
    bool record_files_are_pools) {
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
          record_files_are_pools ? SECONDS : nullptr,
          record_files_are_pools ? UTC : nullptr,
          record_files_are_pools ? MET : nullptr};
}

extern const INTERPOLATION_TYPE POLYNOM_ORBITS;
extern const INTERPOLATION_TYPE POLYFIT_ORBITS;
extern const INTERPOLATION_TYPE CHEBYSHEV_ORBITS;
extern const INTERPOLATION_TYPE EVERETT_ORBITS;

}  // namespace varnoth
