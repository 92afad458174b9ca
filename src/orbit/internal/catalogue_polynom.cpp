#include "interpolation/polynom.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES POLYNOM_ORBITS = PoolAndRecordOrbitFactories<POLYNOM>();

}  // namespace varnoth
