#include "driver/flat_earth_polynomial.hpp"

#include <algorithm>
#include <climits>
#include <cmath>

#include "foundation/matrix.hpp"
#include "interpolation/numerics/lfit.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

/// Coefficients of the least-squares polynomial through the phases of a line, constant term first.
/// The abscissae are raw samples, neither scaled nor centred.
ARRAY<double> Fit(const ARRAY<double>& spl, const ARRAY<double>& phase, int count) {
  ARRAY<double> polynomial(0, count);
  // The largest ahead of the others: a degree out of reach fails before any memory is written.
  const MATRIX<double> covariance(RANGE<int>(1, count), RANGE<int>(1, count));
  // The kernel takes one-based arrays.
  ARRAY<double> sigma(1, SWEEP_SAMPLES);
  std::fill_n(sigma.GetElementBase(0), SWEEP_SAMPLES, 1.0);
  ARRAY<int> fitted(1, count);
  std::fill_n(fitted.GetElementBase(0), count, 1);
  double chi_square = 0.0;
  lfit(spl.GetElementBase(1), phase.GetElementBase(1), sigma.GetBase(), SWEEP_SAMPLES,
       polynomial.GetElementBase(1), fitted.GetBase(), count, covariance.Rows(), &chi_square,
       power_series);
  return polynomial;
}

double Evaluate(const ARRAY<double>& polynomial, double x) {
  const double* const p = polynomial.GetElementBase(0);
  double value = 0.0;
  for (int i = polynomial.GetLength(); i-- > 0;) value = value * x + p[i];
  return value;
}

}  // namespace

void fit_flat_earth_polynomials(GEOMETRY_STATE& state, const SWEEP& sweep, int degree) {
  const int count = degree < INT_MAX ? degree + 1 : degree;
  const double* const spl = sweep.spl.GetElementBase(0);
  double maximum_error = 0.0;
  for (const AZIMUTH_POSITION k : {FIRST_LINE, LAST_LINE}) {
    GlobalLog.printf_line(TRACE, "Fitting polynomial over range");
    const double* const phase = sweep.phase[k].GetElementBase(0);
    const ARRAY<double> polynomial = Fit(sweep.spl, sweep.phase[k], count);
    for (int i = 0; i < count; ++i) {
      GlobalLog.printf_line(PARAMETER, "Poly coefficient : p%d = %lf", i,
                            polynomial.GetElementBase(0)[i]);
    }
    for (int i = 0; i < SWEEP_SAMPLES; ++i) {
      maximum_error = std::max(maximum_error, std::fabs(Evaluate(polynomial, spl[i]) - phase[i]));
    }
    state.flat_phase_poly[k] = polynomial;
  }

  const double* const first = sweep.phase[FIRST_LINE].GetElementBase(0);
  const double* const last = sweep.phase[LAST_LINE].GetElementBase(0);
  state.fringe_frequency_range =
      ((first[10] + last[10]) - (first[0] + last[0])) / (2.0 * (spl[10] - spl[0]));
  // Over the number of lines, not of line steps.
  state.fringe_frequency_azimuth = (last[5] - first[5]) / state.n_lines;
  state.equator_crossing_direction = sweep.master_velocity[2] > 0.0 ? "ascending" : "descending";

  GlobalLog.printf_line(INFO, "Maximum error through ellipsoid appr. [cycl] : %5.4f",
                        maximum_error);
  GlobalLog.printf_line(INFO, "                                         [m] : %5.4f",
                        maximum_error * sweep.metres_per_cycle);
  GlobalLog.printf_line(INFO, "Average range fringe frequency    [cycl/spl] : %f",
                        state.fringe_frequency_range);
  GlobalLog.printf_line(INFO, "Average azimuth fringe frequency  [cycl/spl] : %f",
                        state.fringe_frequency_azimuth);
}

}  // namespace varnoth
