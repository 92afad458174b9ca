#include "interpolation/cheby_poly.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES CHEBYSHEV_ORBITS = PoolOrbitFactories<CHEBY_POLY, POINT>();

}  // namespace varnoth
