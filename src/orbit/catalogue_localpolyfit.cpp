#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom_fit.hpp"
#include "orbit/catalogue_rows.hpp"

namespace varnoth {

namespace {

template <class T>
using LOCAL_POLYNOM_FIT = LOCAL_INTERPOLATION<T, POLYNOM_FIT<T>, POINT<T>>;

}  // namespace

constinit const INTERPOLATION_TYPE LOCALPOLYFIT_ORBITS = {
    LOCALPOLYFIT_ID, "localpolyfit", PoolAndRecordOrbitFactories<LOCAL_POLYNOM_FIT>()};

}  // namespace varnoth
