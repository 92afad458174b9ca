#include "interpolation/spline.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES SPLINE_ORBITS = PoolAndRecordOrbitFactories<SPLINE>();

}  // namespace varnoth
