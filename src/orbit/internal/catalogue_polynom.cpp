#include "interpolation/polynom.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE POLYNOM_ORBITS = {POLYNOM_ID, "polynom",
                                                     PoolAndRecordOrbitFactories<POLYNOM>()};

}  // namespace varnoth
