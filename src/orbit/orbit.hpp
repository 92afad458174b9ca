#pragma once

#include <algorithm>

#include "foundation/errors.hpp"
#include "orbit/sampled_orbit.hpp"

namespace varnoth {

/// An orbit of samples, with one series and one interpolator per coordinate. The coordinates are
/// independent; velocity and acceleration are the first and second derivatives of the position
/// interpolators.
///
/// T and S: as for SAMPLED_ORBIT. I: interpolator. P: its sample, POINT<T> or, for Hermite
/// interpolators, DPOINT<T>. A derived class loads the samples:
///
///     this->NewSamples(this->GetCoordinateCount());
///     for (ARRAY<P>& series : this->samples) Load(series);  // an operation of that class
///     this->Create();
template <class T, class S, class I, class P>
class ORBIT : public SAMPLED_ORBIT<T, S> {
 public:
  /// Builds the interpolators: gives each its order, its count of support points and its series.
  /// Throws what the interpolator throws, and ERROR_NO_MEMORY.
  void Create() override {
    const int count = std::min(this->GetCoordinateCount(), samples.GetLength());
    interpolators.Delete();
    interpolators.NeedRange(RANGE<int>(0, count));
    const ARRAY<P>* series = samples.begin();
    for (I& interpolator : interpolators) {
      interpolator.SetOrder(this->poly_fit_order);
      interpolator.SetSupportPoints(this->support_point_count);
      interpolator.CreateQuiet(*series++);
    }
  }
  void SetSamples(std::span<const double> times, std::span<const COORDINATES> positions,
                  std::span<const COORDINATES> velocities) override {
    if constexpr (!std::is_same_v<S, double>) {
      ORBIT_BASE::SetSamples(times, positions, velocities);
    } else {
      constexpr int SIZE = std::tuple_size_v<COORDINATES>;
      const int count = static_cast<int>(times.size());
      NewSamples(SIZE);
      this->StoreReferenceTime(times[0]);
      for (int c = 0; c < SIZE; ++c) {
        SetSeries(
            c, count, [&](int k) { return this->SecondsFromReference(times[k]); },
            [&](int k) { return positions[k][c]; }, [&](int k) { return velocities[k][c]; });
      }
      Create();
    }
  }
  int GetSampleCount() const override {
    return samples.GetLength() > 0 ? samples.begin()[0].GetLength() : 0;
  }
  /// Copies keys, settings, samples and reference time and builds interpolators of its own. Throws
  /// ERROR_ARGUMENT, after a line at ALARM, for a source that is not an ORBIT of the same four
  /// types; where its samples came from does not matter. Throws what `Create` throws.
  ORBIT_BASE& operator=(const ORBIT_BASE& source) override {
    GlobalLog.set(DEBUG)
        << "virtual ORBIT_BASE& ORBIT<T,S,I,P>::operator=( const ORBIT_BASE& aorbit )\n";
    const auto* orbit = dynamic_cast<const ORBIT*>(&source);
    if (orbit == nullptr) {
      GlobalLog.set(ALARM) << "ORBIT: an orbit of another class can not be assigned\n";
      throw ERROR_ARGUMENT();
    }
    ORBIT_BASE::operator=(source);
    if (orbit == this) return *this;
    interpolators.Delete();
    samples = orbit->samples;
    this->reference_time = orbit->reference_time;
    Create();
    return *this;
  }

 protected:
  using typename SAMPLED_ORBIT<T, S>::DERIVATIVE;

  void Evaluate(DERIVATIVE derivative, T x, int first, int count, T* values) const override {
    I::EvaluateAll(interpolators.begin() + first, count, derivative, x, values);
  }
  int InterpolatorCount() const override { return interpolators.GetLength(); }
  T SampleX(int coordinate, int index) const override { return SampleAt(coordinate, index).x; }
  T SampleY(int coordinate, int index) const override { return SampleAt(coordinate, index).y; }

  /// Makes room for one series per coordinate. First removes the interpolators, which may point
  /// into the former samples.
  void NewSamples(int coordinates) {
    interpolators.Delete();
    samples.NeedRange(RANGE<int>(0, coordinates));
  }

  /// Sets the series of a coordinate from functions that give the parts of a sample by its index.
  /// Only Hermite orbits call `velocity`.
  template <class SECONDS, class VALUE, class VELOCITY>
  void SetSeries(int coordinate, int count, SECONDS seconds, VALUE value, VELOCITY velocity) {
    ARRAY<P>& series = samples.begin()[coordinate];
    series.NeedRange(RANGE<int>(0, count));
    for (int k = 0; k < count; ++k) {
      P& sample = series.begin()[k];
      sample.x = static_cast<T>(seconds(k));
      sample.y = static_cast<T>(value(k));
      if constexpr (std::is_same_v<P, DPOINT<T>>) sample.dy = static_cast<T>(velocity(k));
    }
  }

  ARRAY<ARRAY<P>> samples;  ///< per coordinate; x is seconds from the reference time
  ARRAY<I> interpolators;   ///< one per coordinate

 private:
  const P& SampleAt(int coordinate, int index) const {
    return samples.begin()[coordinate].begin()[index];
  }
};

}  // namespace varnoth
