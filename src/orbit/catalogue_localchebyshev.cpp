#include "interpolation/cheby_poly.hpp"
#include "interpolation/local_interpolation.hpp"
#include "orbit/catalogue_rows.hpp"

namespace varnoth {

namespace {

template <class T>
using LOCAL_CHEBY_POLY = LOCAL_INTERPOLATION<T, CHEBY_POLY<T>, POINT<T>>;

}  // namespace

constinit const INTERPOLATION_TYPE LOCALCHEBYSHEV_ORBITS = {
    LOCALCHEBYSHEV_ID, "localchebyshev", PoolOrbitFactories<LOCAL_CHEBY_POLY, POINT>()};

}  // namespace varnoth
