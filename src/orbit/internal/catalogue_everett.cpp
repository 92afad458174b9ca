#include "interpolation/everett.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES EVERETT_ORBITS = PoolAndRecordOrbitFactories<EVERETT>();

}  // namespace varnoth
