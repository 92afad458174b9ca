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
/// It samples the travel time of the echo around a time, with the light time between the satellites
/// and an atmospheric zenith delay, and fits the square of the travel time by a parabola
/// p0 + p1 t + p2 t², which is exact for a straight-line pass. The minimum of the parabola gives
/// the results. Positions are Earth-fixed.
///
///     BISTATIC_SEARCH search;
///     double v2, time, delay;  // m²/s², s, s
///     search.EvaluateMonostatic(v2, time, delay, target, slave_orbit, 1000.0, 0.0);
///     search.Evaluate(v2, time, delay, target, slave_orbit, time, 0.5, 0.0, master_orbit, nullptr,
///                     false);
class BISTATIC_SEARCH {
 public:
  /// A solver in vacuum without a time offset, with three samples, which the parabola meets
  /// exactly, and a tolerance of 1e-15.
  BISTATIC_SEARCH();
  /// Takes the speed of light (m/s) and its inverse (s/m), an offset (s) from the caller's times to
  /// those of the orbits, the number of samples (at least 3) and the relative tolerance of the
  /// light-time search. Throws ERROR_ARGUMENT, after a line at ALARM, for too few samples, and
  /// ERROR_NO_MEMORY.
  BISTATIC_SEARCH(double light_speed, double inverse_light_speed, double offset, int samples_wanted,
                  double tolerance);
  BISTATIC_SEARCH(const BISTATIC_SEARCH&) = delete;
  BISTATIC_SEARCH& operator=(const BISTATIC_SEARCH&) = delete;

  /// Gives the effective velocity squared p2 c²/4 (m²/s²), the time of closest approach (s) and the
  /// two-way travel time then (s).
  ///
  /// Samples the interval of length `span` (s) centred on `centre_time` (s). `target` is in m,
  /// `zenith_delay` one-way (s). `residuals`, if given, is the warm start of the light-time search,
  /// one number (s) per sample, and receives its result; a vector of another length starts from 0.
  /// `shift_time` moves the time of each sample back by the one-way receive delay.
  ///
  /// Throws what the orbits and the fit throw. A light-time search that is still open after 100
  /// steps shows only in the histogram.
  void Evaluate(double& velocity_squared, double& closest_time, double& minimum_delay,
                const double target[3], const SCENE_ORBIT& receive_orbit, double centre_time,
                double span, double zenith_delay, const SCENE_ORBIT& transmit_orbit,
                VECTOR<double>* residuals, bool shift_time);

  /// The same results for one satellite that receives its own echo, by `FindClosestApproach` from a
  /// start time (s). Calls `tell`, if given, with a search that does not converge. Throws what the
  /// orbit throws.
  void EvaluateMonostatic(double& velocity_squared, double& closest_time, double& minimum_delay,
                          const double target[3], const SCENE_ORBIT& orbit, double time,
                          double zenith_delay, TELL_SEARCH tell = TellOpenSearch) const;

 protected:
  static constexpr int STEP_LIMIT = 100;
  /// Number of searches per count of corrections, 0 to STEP_LIMIT, so that no index needs a test.
  std::array<std::uint64_t, STEP_LIMIT + 1> iteration_histogram{};

 private:
  /// A delay (s) plus the one-way travel time from a satellite position to the target, whose unit
  /// direction from the Earth's centre is `up`.
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

/// A BISTATIC_SEARCH whose destructor logs at TRACE how many light-time searches took how many
/// steps:
///
///     BISTATIC_B search(c, 1.0 / c, 0.0, 5, 1e-12);
class BISTATIC_B : public BISTATIC_SEARCH {
 public:
  using BISTATIC_SEARCH::BISTATIC_SEARCH;
  ~BISTATIC_B();
  BISTATIC_B(const BISTATIC_B&) = delete;
  BISTATIC_B& operator=(const BISTATIC_B&) = delete;
};

}  // namespace varnoth
