#include "interpolation/cheby_poly.hpp"
#include "interpolation/local_interpolation.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES LOCALCHEBYSHEV_ORBITS =
    PoolOrbitFactories<LOCAL<CHEBY_POLY, POINT>::OF, POINT>();

}  // namespace varnoth
