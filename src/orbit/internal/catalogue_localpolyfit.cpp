#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom_fit.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE LOCALPOLYFIT_ORBITS = {
    LOCALPOLYFIT_ID, "localpolyfit", PoolAndRecordOrbitFactories<LOCAL<POLYNOM_FIT, POINT>::OF>()};

}  // namespace varnoth
