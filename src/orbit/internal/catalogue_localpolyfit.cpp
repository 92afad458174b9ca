#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom_fit.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const ORBIT_FACTORIES LOCALPOLYFIT_ORBITS =
    PoolAndRecordOrbitFactories<LOCAL<POLYNOM_FIT, POINT>::OF>();

}  // namespace varnoth
