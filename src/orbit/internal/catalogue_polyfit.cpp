#include "interpolation/polynom_fit.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE POLYFIT_ORBITS = {POLYFIT_ID, "polyfit",
                                                     PoolAndRecordOrbitFactories<POLYNOM_FIT>()};

}  // namespace varnoth
