#include "interpolation/polynom_fit.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES POLYFIT_ORBITS = PoolAndRecordOrbitFactories<POLYNOM_FIT>();

}  // namespace varnoth
