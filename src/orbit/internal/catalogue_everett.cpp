#include "interpolation/everett.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE EVERETT_ORBITS = {EVERETT_ID, "everett",
                                                     PoolAndRecordOrbitFactories<EVERETT>()};

}  // namespace varnoth
