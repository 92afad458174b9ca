// EVERETT's evaluations against chains of as many multiplications and additions.

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "interpolation/everett.hpp"

namespace varnoth {

namespace {

constexpr int SAMPLES = 40;
constexpr double STEP = 10.0;

EVERETT<double> Interpolator(int order) {
  ARRAY<POINT<double>> series(0, SAMPLES);
  for (int i = 0; i < SAMPLES; ++i) {
    series.GetBase()[i] = {STEP * i, 7e6 * std::cos(1e-3 * STEP * i)};
  }
  EVERETT<double> everett;
  everett.SetOrder(order);
  everett.CreateQuiet(series);
  return everett;
}

/// Abscissae that a compiler can't foresee, off the samples.
class ABSCISSAE {
 public:
  double Next() {
    at = at > STEP * 0.9 ? 0.37 : at + 0.61;
    return 150.0 + at;
  }

 private:
  double at = 0.37;
};

using OPERATION = double (EVERETT<double>::*)(double) const;

void Everett(benchmark::State& state, OPERATION operation) {
  const EVERETT<double> everett = Interpolator(static_cast<int>(state.range(0)));
  ABSCISSAE x;
  for (auto _ : state) benchmark::DoNotOptimize((everett.*operation)(x.Next()));
}
BENCHMARK_CAPTURE(Everett, value, &EVERETT<double>::GetY)->DenseRange(2, 10, 2);
BENCHMARK_CAPTURE(Everett, first, &EVERETT<double>::GetDerivedY)->DenseRange(2, 10, 2);
BENCHMARK_CAPTURE(Everett, second, &EVERETT<double>::GetDerived2Y)->DenseRange(2, 10, 2);

/// The arithmetic of a value alone: the step's fraction, two running products with their two
/// divisions by constants of the step k, and the sum over the differences.
void EverettChain(benchmark::State& state) {
  const int half = static_cast<int>(state.range(0)) / 2;
  std::vector<double> differences(2 * SAMPLES);
  for (int i = 0; i < 2 * SAMPLES; ++i) differences[i] = 1.0 / (i + 1);
  // As an object's members, which a compiler can't foresee either.
  volatile double grid[] = {0.0, STEP};
  const double x0 = grid[0];
  const double dx = grid[1];
  ABSCISSAE x;
  for (auto _ : state) {
    const double steps = (x.Next() - x0) / dx;
    const int i = static_cast<int>(std::floor(steps));
    const double r = steps - i;
    const double s = 1 - r;
    double right = r;
    double left = s;
    double y = differences[i + 1] * right + differences[i] * left;
    for (int k = 1; k <= half; ++k) {
      right = right * ((r + k) * (r - k)) / (2.0 * k) / (2.0 * k + 1);
      left = left * ((s + k) * (s - k)) / (2.0 * k) / (2.0 * k + 1);
      y += differences[i + k + 1] * right + differences[i + k] * left;
    }
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(EverettChain)->DenseRange(2, 10, 2);

}  // namespace

}  // namespace varnoth
