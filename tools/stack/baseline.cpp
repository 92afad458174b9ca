#include "tools/stack/baseline.hpp"

namespace varnoth::tools {

VIEW ViewOf(const SATELLITE_STATE& state, const VECTOR_3& point) {
  VIEW view;
  view.place = ToVector(state.position);
  const VECTOR_3 ray = Difference(point, view.place);
  view.range = Norm(ray);
  view.line_of_sight = Scaled(ray, 1 / view.range);
  const VECTOR_3 across = Cross(view.line_of_sight, ToVector(state.velocity));
  const double side = Dot(across, view.place) > 0 ? 1.0 : -1.0;
  view.above = Scaled(across, side / Norm(across));
  // The velocity itself but for what the search of the time without Doppler shift leaves.
  view.along = Scaled(Cross(view.above, view.line_of_sight), side);
  return view;
}

BASELINE BaselineOf(const VIEW& master, const VIEW& slave) {
  const VECTOR_3 baseline = Difference(slave.place, master.place);
  // Of a scene with itself, 0 and not -0.
  return {Dot(baseline, master.above) + 0.0, Dot(baseline, master.line_of_sight) + 0.0,
          Dot(baseline, master.along) + 0.0};
}

}  // namespace varnoth::tools
