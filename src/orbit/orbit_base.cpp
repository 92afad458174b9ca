#include "orbit/orbit_base.hpp"

#include "foundation/errors.hpp"
#include "foundation/split.hpp"

namespace varnoth {

void ORBIT_BASE::SetKeys(const char* param, const char* values, const char* velocities) {
  constexpr const char* SEPARATORS = ": /,(){}";
  param_key = param;
  value_keys = Split(values, SEPARATORS);
  velocity_keys = Split(velocities, SEPARATORS);
}

ORBIT_BASE& ORBIT_BASE::operator=(const ORBIT_BASE& source) {
  GlobalLog.set(DEBUG) << "virtual ORBIT_BASE& operator=( const ORBIT_BASE&  aorbit )\n";
  if (this == &source) return *this;
  param_key = source.param_key;
  value_keys = source.value_keys;
  velocity_keys = source.velocity_keys;
  poly_fit_order = source.poly_fit_order;
  support_point_count = source.support_point_count;
  return *this;
}

void ORBIT_BASE::SetSamples(std::span<const double> /*times*/,
                            std::span<const COORDINATES> /*positions*/,
                            std::span<const COORDINATES> /*velocities*/) {
  GlobalLog.set(ALARM) << "ORBIT: only an orbit over seconds takes samples from memory\n";
  throw ERROR_NOT_IMPLEMENTED();
}

void ORBIT_BASE::Print(int level, const char* title) const {
  GlobalLog.set(level) << "ORBIT_BASE: " << title << "\n";
}

}  // namespace varnoth
