#include "interpolation/hermite_poly.hpp"
#include "interpolation/local_interpolation.hpp"
#include "orbit/catalogue_rows.hpp"

namespace varnoth {

namespace {

template <class T>
using LOCAL_HERMITE_POLY = LOCAL_INTERPOLATION<T, HERMITE_POLY<T>, DPOINT<T>>;

}  // namespace

constinit const INTERPOLATION_TYPE LOCALHERMITE_ORBITS = {
    LOCALHERMITE_ID, "localhermite", PoolOrbitFactories<LOCAL_HERMITE_POLY, DPOINT>()};

}  // namespace varnoth
