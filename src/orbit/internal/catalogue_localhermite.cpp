#include "interpolation/hermite_poly.hpp"
#include "interpolation/local_interpolation.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES LOCALHERMITE_ORBITS =
    PoolOrbitFactories<LOCAL<HERMITE_POLY, DPOINT>::OF, DPOINT>();

}  // namespace varnoth
