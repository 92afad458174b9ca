#include "orbit/internal/catalogue.hpp"

#include "orbit/internal/catalogue_rows.hpp"

namespace varnoth {

namespace {

constexpr ORBIT_TYPE ORBIT_TYPES[ORBIT_TYPE_COUNT] = {
    {1, "orbit_pool_float_double"},  {2, "orbit_pool_float_utc"},  {3, "orbit_pool_float_met"},
    {4, "orbit_pool_double_double"}, {5, "orbit_pool_double_utc"}, {6, "orbit_pool_double_met"},
    {7, "orbit_mdb_double_double"},  {8, "orbit_mdb_double_utc"},  {9, "orbit_mdb_double_met"},
};

#define VARNOTH_ROW(NAME, TEXT) {NAME##_ID, TEXT, &NAME##_ORBITS},
constexpr INTERPOLATION_TYPE INTERPOLATIONS[] = {VARNOTH_INTERPOLATIONS(VARNOTH_ROW)};
#undef VARNOTH_ROW

}  // namespace

std::span<const ORBIT_TYPE> OrbitTypes() { return ORBIT_TYPES; }

std::span<const INTERPOLATION_TYPE> Interpolations() { return INTERPOLATIONS; }

ORBIT_FACTORY FindOrbitFactory(int orbit_type_id, int interpolation_id) {
  for (const INTERPOLATION_TYPE& interpolation : INTERPOLATIONS) {
    if (interpolation.id != interpolation_id) continue;
    for (int type = 0; type < ORBIT_TYPE_COUNT; ++type) {
      if (ORBIT_TYPES[type].id == orbit_type_id) return (*interpolation.factories)[type];
    }
  }
  return nullptr;
}

}  // namespace varnoth
