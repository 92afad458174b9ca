#include "interpolation/polynom.hpp"
#include "orbit/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE POLYNOM_ORBITS = {POLYNOM_ID, "polynom",
                                                     PoolOrbitFactories<POLYNOM, POINT>(false)};

}  // namespace varnoth
