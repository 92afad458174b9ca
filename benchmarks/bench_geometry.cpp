// The solvers of a run's inner loop against their library calls and their evaluations.

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <utility>

#include "foundation/vector.hpp"
#include "geometry/geolocation_fast.hpp"
#include "geometry/slave_time.hpp"
#include "pool_file.hpp"

namespace varnoth {

namespace {

constexpr double POSITION[3] = {-2694383.7, -3401618.1, 5598241.2};  // m
constexpr double VELOCITY[3] = {-5218.1, -3170.5, -4430.7};          // m/s
constexpr double POLE = 6356752.3142;                                // m
constexpr double EQUATOR = 6378137.0;                                // m
constexpr double FAST_TIME = 0.0058;                                 // s

/// Fast times of the near, middle and far range in turn.
class FAST_TIMES {
 public:
  double Next() {
    step = step == 2 ? 0 : step + 1;
    return FAST_TIME + 1e-4 * step;
  }

 private:
  int step = 0;
};

void Geolocation(benchmark::State& state) {
  GEOLOCATION_WORK work{};
  FAST_TIMES times;
  for (auto _ : state) {
    double target[3];
    double heading = 0.0;
    double latitude = 0.0;
    double longitude = 0.0;
    double incidence = 0.0;
    geolocation_fast(work, POSITION, VELOCITY, target, heading, latitude, longitude, incidence, 1.0,
                     0.0, POLE, EQUATOR, times.Next(), 0.0);
    benchmark::DoNotOptimize(target);
    benchmark::DoNotOptimize(incidence);
  }
}
BENCHMARK(Geolocation);

/// Library calls and the serial chain alone: what comes before the search, five of its steps, and
/// what follows it. Every call waits for what it waits for in the solver.
void GeolocationFloor(benchmark::State& state) {
  FAST_TIMES times;
  // A compiler must not know the numbers.
  volatile double numbers[] = {7083000.0, 0.79};
  const double r = numbers[0];
  const double ratio = numbers[1];
  const double e2 = 1.0 - (POLE * POLE) / (EQUATOR * EQUATOR);
  for (auto _ : state) {
    const double range = times.Next() * 149896229.0;
    const double phi = std::asin(ratio);
    const double sin_phi = std::sin(phi);
    const double cos_phi = std::cos(phi);
    const double lambda = std::atan(ratio + 0.1);
    double sum = std::sin(lambda) + std::cos(lambda);
    double rho = POLE / std::sqrt(1.0 - e2 * cos_phi * cos_phi);
    for (int step = 0; step < 5; ++step) {
      const double dz = (r * r + range * range - rho * rho) / (2.0 * r);
      const double dy = std::sqrt(range * range - dz * dz);
      sum += std::sqrt(dy * dy + dz * dz);
      const double psi = std::asin(((r - dz) * sin_phi + 0.1 * dy * cos_phi) / rho);
      const double cos_psi = std::cos(psi);
      rho = POLE / std::sqrt(1.0 - e2 * cos_psi * cos_psi);
    }
    sum += std::acos(ratio);
    const double target_psi = std::asin(rho / 8e6);
    const double target_lambda = std::atan(rho / 7e6);
    sum += std::sin(target_lambda) + std::cos(target_lambda);
    const double target_phi = std::atan(std::tan(target_psi) / (1.0 - e2));
    const double normal = std::sin(target_phi) * 0.5 + std::cos(target_phi) * 0.3;
    sum += std::acos(normal / std::sqrt(1.0 + normal));
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(GeolocationFloor);

/// A pass of a satellite over a point.
class PASS {
 public:
  PASS() : file(bench::OrbitText(40, 4)), pool(file.Path()) {
    orbit.read(pool);
    GetPosition(orbit, 195.3, target);
    for (double& coordinate : target) coordinate *= 0.9;
  }

  /// Newton's search from two seconds before the pass.
  double Search() const {
    double range = 0.0;
    return CalcSlaveTime(orbit, target, range, START) + range;
  }
  /// How many states the search asks for; an orbit counts them.
  int CountStates() {
    struct COUNTER : ORBIT_BASE {
      using ORBIT_BASE::GetPosition, ORBIT_BASE::GetVelocity, ORBIT_BASE::GetAcceleration;
      using ORBIT_BASE::operator=;
      explicit COUNTER(ORBIT_BASE& counted) : orbit(counted) {}
      void GetPosition(const double& t, double* out) const override {
        ++count;
        orbit.GetPosition(t, out);
      }
      void GetVelocity(const double& t, double* out) const override { orbit.GetVelocity(t, out); }
      void GetAcceleration(const double& t, double* out) const override {
        orbit.GetAcceleration(t, out);
      }
      ORBIT_BASE& orbit;
      mutable int count = 0;
    };
    auto core = std::move(orbit.core);
    orbit.core = std::make_unique<COUNTER>(*core);
    Search();
    const int count = static_cast<const COUNTER&>(*orbit.core).count;
    orbit.core = std::move(core);
    return count;
  }

  static constexpr double START = 193.3;  // s
  SCENE_ORBIT orbit;

 private:
  bench::POOL_FILE file;
  PARAMETER_POOL pool;
  double target[3] = {};
};

void SlaveTime(benchmark::State& state) {
  bench::ShowNothing();
  const PASS pass;
  for (auto _ : state) benchmark::DoNotOptimize(pass.Search());
}
BENCHMARK(SlaveTime);

/// As many positions, velocities and accelerations as the search asks for, alone.
void SlaveTimeFloor(benchmark::State& state) {
  bench::ShowNothing();
  PASS pass;
  const int count = pass.CountStates();
  for (auto _ : state) {
    for (int i = 0; i < count; ++i) {
      SATELLITE_STATE satellite{};
      GetState(pass.orbit, PASS::START + i, satellite);
      benchmark::DoNotOptimize(satellite);
    }
  }
}
BENCHMARK(SlaveTimeFloor);

}  // namespace

}  // namespace varnoth
