#include "interpolation/cheby_poly.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE CHEBYSHEV_ORBITS = {CHEBYSHEV_ID, "chebyshev",
                                                       PoolOrbitFactories<CHEBY_POLY, POINT>()};

}  // namespace varnoth
