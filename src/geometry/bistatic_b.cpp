#include "geometry/bistatic_b.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "geometry/slave_time.hpp"
#include "log/log.hpp"

namespace varnoth {

BISTATIC_SEARCH::BISTATIC_SEARCH()
    : BISTATIC_SEARCH(SPEED_OF_LIGHT, 3.3356409519815204e-09, 0.0, 3, 1e-15) {}

BISTATIC_SEARCH::BISTATIC_SEARCH(double light_speed, double inverse_light_speed, double offset,
                                 int samples_wanted, double tolerance)
    : speed_of_light(light_speed),
      inverse_speed_of_light(inverse_light_speed),
      time_offset(offset),
      sample_count(samples_wanted),
      accuracy(tolerance) {
  constexpr int PARABOLA = 2;
  if (sample_count <= PARABOLA) {
    GlobalLog.set(ALARM) << "BISTATIC_B: a parabola needs three samples or more, not "
                         << sample_count << "\n";
    throw ERROR_ARGUMENT();
  }
  fit.SetOrder(PARABOLA);
  samples.NeedRange(RANGE<int>(0, sample_count));
}

BISTATIC_B::~BISTATIC_B() {
  GlobalLog.printf_line(TRACE, "BISTATIC_B: histogram of iterations:");
  for (std::size_t k = 0; k < iteration_histogram.size(); ++k) {
    if (iteration_histogram[k] == 0) continue;
    GlobalLog.printf_line(TRACE, "%d iterations: %d occurrences", static_cast<int>(k) + 1,
                          static_cast<int>(iteration_histogram[k]));
  }
}

double BISTATIC_SEARCH::AddOneWayDelay(double delay, const double position[3],
                                       const double target[3], const double up[3],
                                       double zenith_delay) const {
  double d[3] = {};
  Subtract(d, position, target);
  const double distance = Length(d);
  // The fraction is the slant factor of the zenith delay.
  return delay + inverse_speed_of_light * distance +
         (distance / std::fabs(DotProduct(d, up))) * zenith_delay;
}

void BISTATIC_SEARCH::Evaluate(double& velocity_squared, double& closest_time,
                               double& minimum_delay, const double target[3],
                               const SCENE_ORBIT& receive_orbit, double centre_time, double span,
                               double zenith_delay, const SCENE_ORBIT& transmit_orbit,
                               VECTOR<double>* residuals, bool shift_time) {
  double up[3] = {};
  const double target_length = Length(target);
  for (int i = 0; i < 3; ++i) up[i] = target[i] / target_length;
  const double centre = centre_time + time_offset;
  const double step = span / (sample_count - 1);
  double* warm_start = nullptr;
  if (residuals != nullptr) {
    const bool fits = residuals->GetLength() == sample_count;
    residuals->NeedRange(RANGE<int>(0, sample_count));
    warm_start = residuals->begin();
    if (!fits) std::fill_n(warm_start, sample_count, 0.0);
  }

  for (int i = 0; i < sample_count; ++i) {
    double tau = i * step - 0.5 * span;
    const double receive_time = tau + centre;
    double position[3] = {};
    GetPosition(receive_orbit, receive_time, position);
    const double a = AddOneWayDelay(0.0, position, target, up, zenith_delay);
    double g = 2.0 * a + (warm_start != nullptr ? warm_start[i] : 0.0);
    double next;
    int k = 0;
    for (;;) {
      GetPosition(transmit_orbit, receive_time - g, position);
      next = AddOneWayDelay(a, position, target, up, zenith_delay);
      // With a NaN the search goes on to its limit.
      if (std::isgreater(accuracy, std::fabs(next / g - 1.0))) break;
      if (++k == STEP_LIMIT) break;
      g = next;
    }
    if (shift_time) tau -= a;
    POINT<long double>& sample = samples.begin()[i];
    sample.x = tau;
    sample.y = next * next;
    if (warm_start != nullptr) warm_start[i] = next - 2.0 * a;
    ++iteration_histogram[static_cast<std::size_t>(k)];
  }

  fit.CreateQuiet(samples);
  const long double* const p = fit.GetCoeffs();
  velocity_squared = static_cast<double>(p[2] * 0.25L * speed_of_light * speed_of_light);
  closest_time = static_cast<double>((p[1] * -0.5L) / p[2] + centre_time);
  minimum_delay = static_cast<double>(std::sqrt(p[0] - (0.25L * p[1] * p[1]) / p[2]));
}

void BISTATIC_SEARCH::EvaluateMonostatic(double& velocity_squared, double& closest_time,
                                         double& minimum_delay, const double target[3],
                                         const SCENE_ORBIT& orbit, double time, double zenith_delay,
                                         TELL_SEARCH tell) const {
  const CLOSEST_APPROACH found = FindClosestApproach(orbit, target, time + time_offset);
  if (found.status != SOLVER_STATUS::FOUND && tell != nullptr) tell(found);
  SATELLITE_STATE state{};
  GetState(orbit, found.time, state);
  double d[3] = {};
  Subtract(d, state.position, target);
  const double w = Length(d) * zenith_delay * Length(target) / std::fabs(DotProduct(target, d));
  closest_time = found.time - time_offset;
  minimum_delay = 2.0 * (inverse_speed_of_light * found.range + w);
  velocity_squared = DotProduct(d, state.acceleration) + DotProduct(state.velocity, state.velocity);
}

}  // namespace varnoth
