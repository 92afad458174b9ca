#pragma once

#include <array>
#include <cstdint>

#include "foundation/array.hpp"
#include "foundation/vector.hpp"
#include "geometry/slave_time.hpp"
#include "interpolation/polynom_fit.hpp"

namespace varnoth {

/// Closest approach of a radar with separate transmit and receive orbits to a point on the ground.
///
/// The travel time of the echo is sampled around a time, with the light time between the satellites
/// and an atmospheric zenith delay; the square of the travel time is fitted by a parabola, which a
/// straight-line pass obeys exactly; its minimum gives the results.
class BISTATIC_SEARCH {
 public:
  /// A solver in vacuum with three samples and a parabola through them.
  BISTATIC_SEARCH();
  /// The speed of light (m/s) and its inverse (s/m), an offset (s) added to every time given, the
  /// number of samples (at least 3) and the relative tolerance of the light-time search. Throws
  /// ERROR_ARGUMENT, behind a line at ALARM, for too few samples.
  BISTATIC_SEARCH(double light_speed, double inverse_light_speed, double offset, int samples_wanted,
                  double tolerance);
  BISTATIC_SEARCH(const BISTATIC_SEARCH&) = delete;
  BISTATIC_SEARCH& operator=(const BISTATIC_SEARCH&) = delete;

  /// Gives the effective velocity squared (m²/s²), the time of closest approach (s) and the two-way
  /// travel time at it (s).
  ///
  /// Samples the interval of length `span` (s) about `centre_time` (s). `zenith_delay` is one-way
  /// (s). `residuals`, if given, is the warm start of the light-time search per sample, and takes
  /// its result. With `shift_time` each sample's time is moved back by the one-way receive delay.
  /// Throws what the orbits and the fit throw; a search that runs out of steps shows only in the
  /// histogram.
  void Evaluate(double& velocity_squared, double& closest_time, double& minimum_delay,
                const double target[3], const SCENE_ORBIT& receive_orbit, double centre_time,
                double span, double zenith_delay, const SCENE_ORBIT& transmit_orbit,
                VECTOR<double>* residuals, bool shift_time);

  /// The same results for one satellite that hears its own echo, from a start time (s). A search
  /// for that time that does not end is told by `tell`, if given.
  void EvaluateMonostatic(double& velocity_squared, double& closest_time, double& minimum_delay,
                          const double target[3], const SCENE_ORBIT& orbit, double time,
                          double zenith_delay, TELL_SEARCH tell = TellOpenSearch) const;

 protected:
  static constexpr int STEP_LIMIT = 100;
  /// Counts per number of steps; one place more than there are steps, so that no test is needed.
  std::array<std::uint64_t, STEP_LIMIT + 1> iteration_histogram{};

 private:
  /// A delay (s) with the one-way travel time from a satellite position to the target, whose unit
  /// direction is `up`, added.
  double AddOneWayDelay(double delay, const double position[3], const double target[3],
                        const double up[3], double zenith_delay) const;

  double speed_of_light;
  double inverse_speed_of_light;
  double time_offset;
  int sample_count;
  double accuracy;
  POLYNOM_FIT<long double> fit;
  ARRAY<POINT<long double>> samples;
};

/// The same, and at its end it logs at TRACE how many light-time searches ended after how many
/// steps.
class BISTATIC_B : public BISTATIC_SEARCH {
 public:
  using BISTATIC_SEARCH::BISTATIC_SEARCH;
  ~BISTATIC_B();
  BISTATIC_B(const BISTATIC_B&) = delete;
  BISTATIC_B& operator=(const BISTATIC_B&) = delete;
};

}  // namespace varnoth
