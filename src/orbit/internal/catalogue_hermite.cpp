#include "interpolation/hermite_poly.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES HERMITE_ORBITS = PoolOrbitFactories<HERMITE_POLY, DPOINT>();

}  // namespace varnoth
