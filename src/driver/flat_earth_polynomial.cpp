#include "driver/flat_earth_polynomial.hpp"

#include <algorithm>
#include <climits>
#include <cmath>
#include <span>

#include "foundation/matrix.hpp"
#include "interpolation/numerics/lfit.hpp"
#include "interpolation/numerics/nested_multiplication.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

/// Coefficients of the least-squares polynomial through the phases of a line, constant term first.
/// The abscissae are raw samples, neither scaled nor centred.
ARRAY<double> Fit(const ARRAY<double>& spl, const ARRAY<double>& phase, int count) {
  ARRAY<double> polynomial(0, count);
  // The largest allocation first: an excessive degree fails before the program touches any memory.
  MATRIX<double> covariance(RANGE<int>(1, count), RANGE<int>(1, count));
  // The kernel takes one-based arrays.
  ARRAY<double> sigma(1, SWEEP_SAMPLES);
  std::fill(sigma.begin(), sigma.end(), 1.0);
  ARRAY<int> fitted(1, count);
  std::fill(fitted.begin(), fitted.end(), 1);
  double chi_square = 0.0;
  lfit(spl.GetElementBase(1), phase.GetElementBase(1), sigma.GetBase(), SWEEP_SAMPLES,
       polynomial.GetElementBase(1), fitted.GetBase(), count, covariance.Rows(), &chi_square,
       power_series);
  return polynomial;
}

}  // namespace

FLAT_EARTH fit_flat_earth_polynomials(const SCENE& scene, const SWEEP& sweep, int degree) {
  FLAT_EARTH flat_earth;
  const int count = degree < INT_MAX ? degree + 1 : degree;
  const double* const spl = sweep.spl.begin();
  double maximum_error = 0.0;
  for (const AZIMUTH_POSITION k : {FIRST_LINE, LAST_LINE}) {
    GlobalLog.printf_line(TRACE, "Fitting polynomial over range");
    ARRAY<double>& polynomial = flat_earth.flat_phase_poly[k];
    polynomial = Fit(sweep.spl, sweep.Phase(k), count);
    for (int i = 0; i < count; ++i) {
      GlobalLog.printf_line(PARAMETER, "Poly coefficient : p%d = %lf", i, polynomial.begin()[i]);
    }
    const std::span<const double> coefficients(polynomial.begin(), polynomial.end());
    for (int i = 0; i < SWEEP_SAMPLES; ++i) {
      maximum_error = std::max(maximum_error, std::fabs(NestedMultiplication(coefficients, spl[i]) -
                                                        sweep.samples[k][i].phase));
    }
  }

  const auto& first = sweep.samples[FIRST_LINE];
  const auto& last = sweep.samples[LAST_LINE];
  flat_earth.fringe_frequency_range = ((first[FAR_SAMPLE].phase + last[FAR_SAMPLE].phase) -
                                       (first[NEAR_SAMPLE].phase + last[NEAR_SAMPLE].phase)) /
                                      (2.0 * (spl[FAR_SAMPLE] - spl[NEAR_SAMPLE]));
  // Divide by the number of lines, not of line steps.
  flat_earth.fringe_frequency_azimuth =
      (last[MID_SAMPLE].phase - first[MID_SAMPLE].phase) / scene.n_lines;
  flat_earth.equator_crossing_direction =
      sweep.lines[LAST_LINE].velocity[2] > 0.0 ? "ascending" : "descending";

  GlobalLog.printf_line(INFO, "Maximum error through ellipsoid appr. [cycl] : %5.4f",
                        maximum_error);
  GlobalLog.printf_line(INFO, "                                         [m] : %5.4f",
                        maximum_error * last[FAR_SAMPLE].metres_per_cycle);
  GlobalLog.printf_line(INFO, "Average range fringe frequency    [cycl/spl] : %f",
                        flat_earth.fringe_frequency_range);
  GlobalLog.printf_line(INFO, "Average azimuth fringe frequency  [cycl/spl] : %f",
                        flat_earth.fringe_frequency_azimuth);
  return flat_earth;
}

}  // namespace varnoth
