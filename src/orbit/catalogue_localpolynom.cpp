#include "interpolation/local_interpolation.hpp"
#include "interpolation/polynom.hpp"
#include "orbit/catalogue_rows.hpp"

namespace varnoth {

namespace {

template <class T>
using LOCAL_POLYNOM = LOCAL_INTERPOLATION<T, POLYNOM<T>, POINT<T>>;

}  // namespace

constinit const INTERPOLATION_TYPE LOCALPOLYNOM_ORBITS = {
    LOCALPOLYNOM_ID, "localpolynom", PoolAndRecordOrbitFactories<LOCAL_POLYNOM>()};

}  // namespace varnoth
