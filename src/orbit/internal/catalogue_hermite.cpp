#include "interpolation/hermite_poly.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE HERMITE_ORBITS = {HERMITE_ID, "hermite",
                                                     PoolOrbitFactories<HERMITE_POLY, DPOINT>()};

}  // namespace varnoth
