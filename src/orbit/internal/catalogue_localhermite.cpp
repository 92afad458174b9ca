#include "interpolation/hermite_poly.hpp"
#include "interpolation/local_interpolation.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE LOCALHERMITE_ORBITS = {
    LOCALHERMITE_ID, "localhermite", PoolOrbitFactories<LOCAL<HERMITE_POLY, DPOINT>::OF, DPOINT>()};

}  // namespace varnoth
