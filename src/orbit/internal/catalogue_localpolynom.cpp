#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE LOCALPOLYNOM_ORBITS = {
    LOCALPOLYNOM_ID, "localpolynom", PoolAndRecordOrbitFactories<LOCAL<POLYNOM, POINT>::OF>()};

}  // namespace varnoth
