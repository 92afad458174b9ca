#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES LOCALPOLYNOM_ORBITS =
    PoolAndRecordOrbitFactories<LOCAL<POLYNOM, POINT>::OF>();

}  // namespace varnoth
