// The fits against their multiplications and additions, and against GSL's decomposition.

#include <benchmark/benchmark.h>
#include <gsl/gsl_blas.h>
#include <gsl/gsl_linalg.h>

#include <memory>
#include <vector>

#include "foundation/matrix.hpp"
#include "interpolation/numerics/lfit.hpp"
#include "interpolation/numerics/svdfit.hpp"

namespace varnoth {

namespace {

/// Data of a fit, one-based.
struct DATA {
  explicit DATA(int count) : x(1, count), y(1, count), sigma(1, count) {
    for (int i = 1; i <= count; ++i) {
      x.GetBase()[i] = -1.0 + 2.0 * (i - 1) / (count - 1);
      y.GetBase()[i] = 1.0 / (1.5 + x.GetBase()[i]);
      sigma.GetBase()[i] = 1.0;
    }
  }
  ARRAY<double> x;
  ARRAY<double> y;
  ARRAY<double> sigma;
};

void NormalEquations(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const int parameters = static_cast<int>(state.range(1));
  const DATA data(count);
  const ARRAY<double> a(1, parameters);
  ARRAY<int> ia(1, parameters);
  for (int j = 1; j <= parameters; ++j) ia.GetBase()[j] = 1;
  MATRIX<double> covariances(RANGE<int>(1, parameters), RANGE<int>(1, parameters));
  for (auto _ : state) {
    double chi_square = 0.0;
    lfit(data.x.GetBase(), data.y.GetBase(), data.sigma.GetBase(), count, a.GetBase(), ia.GetBase(),
         parameters, covariances.Rows(), &chi_square, power_series);
    benchmark::DoNotOptimize(chi_square);
  }
}
BENCHMARK(NormalEquations)->Args({11, 4});

/// As many multiplications and additions as the normal equations have, m²n, in the order that sums
/// up a matrix.
void NormalEquationsFloor(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const int parameters = static_cast<int>(state.range(1));
  std::vector<double> rows(static_cast<std::size_t>(count * parameters), 0.5);
  std::vector<double> sums(static_cast<std::size_t>(parameters * parameters));
  for (auto _ : state) {
    benchmark::DoNotOptimize(rows.data());
    std::fill(sums.begin(), sums.end(), 0.0);
    for (int i = 0; i < count; ++i) {
      const double* const row = rows.data() + i * parameters;
      for (int l = 0; l < parameters; ++l) {
        for (int m = 0; m < parameters; ++m) sums[l * parameters + m] += row[l] * row[m];
      }
    }
    benchmark::DoNotOptimize(sums.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(NormalEquationsFloor)->Args({11, 4});

void SvdFit(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const int parameters = static_cast<int>(state.range(1));
  const DATA data(count);
  const ARRAY<double> a(1, parameters);
  SVDFIT<double, CHEBY_POLY_FUNCTION<double>> fit;
  for (auto _ : state) {
    double chi_square = 0.0;
    fit.FitQuiet(data.x.GetBase(), data.y.GetBase(), data.sigma.GetBase(), count, a.GetBase(),
                 parameters, chi_square);
    benchmark::DoNotOptimize(chi_square);
  }
}
BENCHMARK(SvdFit)->Args({11, 4})->Args({200, 8});

/// The same fit with GSL: matrix, decomposition, solution, residuals.
void SvdFitGsl(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const auto parameters = static_cast<std::size_t>(state.range(1));
  const DATA data(static_cast<int>(count));
  using CHEBY = CHEBY_POLY_FUNCTION<double>;
  const auto matrix = [](std::size_t rows, std::size_t columns) {
    return std::unique_ptr<gsl_matrix, decltype(&gsl_matrix_free)>(gsl_matrix_alloc(rows, columns),
                                                                   gsl_matrix_free);
  };
  const auto vector = [](std::size_t length) {
    return std::unique_ptr<gsl_vector, decltype(&gsl_vector_free)>(gsl_vector_alloc(length),
                                                                   gsl_vector_free);
  };
  const auto u = matrix(count, parameters);
  const auto v = matrix(parameters, parameters);
  const auto w = vector(parameters);
  const auto work = vector(parameters);
  const auto right = vector(count);
  const auto a = vector(parameters);
  std::vector<double> basis(parameters + 1);
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) {
      CHEBY::Fill(data.x.GetBase()[i + 1], basis.data(), static_cast<int>(parameters));
      for (std::size_t j = 0; j < parameters; ++j) gsl_matrix_set(u.get(), i, j, basis[j + 1]);
      gsl_vector_set(right.get(), i, data.y.GetBase()[i + 1]);
    }
    gsl_linalg_SV_decomp(u.get(), v.get(), w.get(), work.get());
    gsl_linalg_SV_solve(u.get(), v.get(), w.get(), right.get(), a.get());
    double chi_square = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
      CHEBY::Fill(data.x.GetBase()[i + 1], basis.data(), static_cast<int>(parameters));
      double fitted = 0.0;
      for (std::size_t j = 0; j < parameters; ++j)
        fitted += gsl_vector_get(a.get(), j) * basis[j + 1];
      const double residual = data.y.GetBase()[i + 1] - fitted;
      chi_square += residual * residual;
    }
    benchmark::DoNotOptimize(chi_square);
  }
}
BENCHMARK(SvdFitGsl)->Args({11, 4})->Args({200, 8});

}  // namespace

}  // namespace varnoth
