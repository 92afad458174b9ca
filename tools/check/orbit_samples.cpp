#include "tools/check/orbit_samples.hpp"

#include <algorithm>
#include <cmath>

namespace varnoth::tools {

ORBIT_SAMPLES SamplesOf(const SCENE_ORBIT& orbit) {
  ORBIT_SAMPLES samples;
  for (int i = 0; i < orbit.core->GetSampleCount(); ++i) {
    // Only the form of the orbit's own precision has an effect.
    float single_time = std::nanf("");
    double time = std::nan("");
    float single[3] = {};
    COORDINATES position{};
    orbit.core->GetRelativeSampleTime(i, single_time);
    orbit.core->GetRelativeSampleTime(i, time);
    samples.is_single = !std::isnan(single_time);
    if (samples.is_single) {
      orbit.core->GetSample(i, single);
      time = static_cast<double>(single_time);
      std::copy(single, single + 3, position.begin());
    } else {
      orbit.core->GetSample(i, position.data());
    }
    samples.times.push_back(time - orbit.time_offset);
    samples.positions.push_back(position);
  }
  return samples;
}

INTERPOLATION_WORDS::INTERPOLATION_WORDS(const std::string& text) {
  SCENE_ORBIT parsed;
  parsed.ParseInterpolation(text.c_str());
  order = parsed.poly_fit_order;
  support_points = parsed.support_point_count;
  name = text.substr(0, text.find_first_of("_,;:-()"));
}

std::size_t INTERPOLATION_WORDS::Margin() const {
  if (name == "everett") return static_cast<std::size_t>(std::max(order / 2, 0));
  if (name.starts_with("local"))
    return static_cast<std::size_t>(std::max(support_points - 1, 0) / 2);
  return 0;
}

}  // namespace varnoth::tools
