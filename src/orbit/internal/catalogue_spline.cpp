#include "interpolation/spline.hpp"
#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

constinit const INTERPOLATION_TYPE SPLINE_ORBITS = {SPLINE_ID, "spline",
                                                    PoolAndRecordOrbitFactories<SPLINE>()};

}  // namespace varnoth
