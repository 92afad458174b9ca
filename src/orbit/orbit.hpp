#pragma once

#include <type_traits>

#include "orbit/orbit_base.hpp"

namespace varnoth {

/// An orbit of samples, one series and one interpolator per coordinate. The coordinates are
/// independent; velocity and acceleration are the first and second derivatives of the position
/// interpolators.
///
/// T: coordinate type (float, double). S: time type of the samples (double seconds, UNIVERSAL_TIME
/// or MISSION_ELAPSED_TIME). I: interpolator. P: support point, POINT<T> or, for Hermite
/// interpolators, DPOINT<T>.
///
/// The definitions stand in orbit_definitions.hpp, for the files that instantiate.
template <class T, class S, class I, class P>
class ORBIT : public ORBIT_BASE {
 public:
  /// Gives every interpolator its order, its count of support points and its series. Throws what
  /// the interpolator throws.
  void Create() override;
  int GetSampleCount() const override;
  /// Copies keys, settings and samples and builds interpolators of its own. Throws ERROR_ARGUMENT
  /// for a source of another class.
  ORBIT_BASE& operator=(const ORBIT_BASE& source) override;

  /// Time of the first sample.
  void GetReferenceTime(UNIVERSAL_TIME& time) const override { GiveReferenceTime(time); }
  void GetReferenceTime(MISSION_ELAPSED_TIME& time) const override { GiveReferenceTime(time); }
  void GetReferenceTime(double& time) const override { GiveReferenceTime(time); }
  void SetReferenceTime(const UNIVERSAL_TIME& time) override { TakeReferenceTime(time); }
  void SetReferenceTime(const MISSION_ELAPSED_TIME& time) override { TakeReferenceTime(time); }
  void SetReferenceTime(double time) requires std::is_same_v<S, double> { TakeReferenceTime(time); }

  /// Value (m), first (m/s) and second derivative (m/s²) at a time. A float, double or long double
  /// time is seconds from the reference time. A VECTOR takes GetCoordinateCount() elements and must
  /// have that many, a raw array exactly three, whatever the orbit has; ERROR_ARGUMENT otherwise.
  /// Nothing is allocated.
#define VARNOTH_GetPosition GetY
#define VARNOTH_GetVelocity GetDerivedY
#define VARNOTH_GetAcceleration GetDerived2Y
#define VARNOTH_DEFINE(GROUP, TIME, OUTPUT)                                       \
  void GROUP(const TIME& time, OUTPUT result) const override {                    \
    Evaluate([](const I& i, T x) { return i.VARNOTH_##GROUP(x); }, time, result); \
  }
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DEFINE, GetPosition)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DEFINE, GetVelocity)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DEFINE, GetAcceleration)
#undef VARNOTH_DEFINE

  /// What stands at a sample: its absolute time, its seconds from the reference time, its values,
  /// and the derivatives there. Of each three element types only that of T has an effect. Throws
  /// ERROR_ARGUMENT for an index that is no sample's.
  void GetSampleTime(int index, UNIVERSAL_TIME& time) const override {
    GetSampleTimeInto(index, time);
  }
  void GetSampleTime(int index, MISSION_ELAPSED_TIME& time) const override {
    GetSampleTimeInto(index, time);
  }
#define VARNOTH_DEFINE(OPERATION, OUTPUT) \
  void OPERATION(int index, OUTPUT result) const override { OPERATION##Into(index, result); }
  VARNOTH_SAMPLE_ENTRIES(VARNOTH_DEFINE)
#undef VARNOTH_DEFINE
#undef VARNOTH_GetPosition
#undef VARNOTH_GetVelocity
#undef VARNOTH_GetAcceleration

  using ORBIT_BASE::SavePolynomial;
  /// Writes `count` values of a coordinate's curve from `start` to `end` (seconds from the
  /// reference time) to `file`, and the support points in that interval to `file` with ".pkt"
  /// behind: time, blank, value. Throws ERROR_CAN_NOT_CREATE_FILE.
  void SavePolynomial(const char* file, int coordinate, int count, double start,
                      double end) const override;
  /// Logs samples, interpolated positions and differences as a table; for three coordinates.
  void Print(int level, const char* title) const override;

 protected:
  void TakeReferenceTime(const auto& time) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(time)>, S>) reference_time = time;
  }

  ARRAY<ARRAY<P>> samples;  ///< per coordinate; x is seconds from `reference_time`
  ARRAY<I> interpolators;   ///< one per coordinate
  S reference_time{};

 private:
  static constexpr int POSITION_SIZE = 3;

  /// Seconds from the reference time, as the interpolators take them.
  template <class TIME>
  double SecondsOf(const TIME& time) const;
  template <class EVALUATION, class TIME, class OUTPUT>
  void Evaluate(EVALUATION evaluation, const TIME& time, OUTPUT& result) const;
  /// Gives element(c) for each coordinate c to the output.
  template <class E, class ELEMENT>
  void Fill(VECTOR<E>& result, const ELEMENT& element) const;
  template <class E, class ELEMENT>
  void Fill(E*& result, const ELEMENT& element) const;
  template <class TIME>
  void GiveReferenceTime(TIME& time) const;

  const P& SampleAt(int coordinate, int index) const;
  template <class TIME>
  void GetSampleTimeInto(int index, TIME& time) const;
  template <class E>
  void GetRelativeSampleTimeInto(int index, E& time) const;
  template <class OUTPUT>
  void GetSampleInto(int index, OUTPUT& result) const;
  template <class OUTPUT>
  void GetSampleVelocityInto(int index, OUTPUT& result) const;
  template <class OUTPUT>
  void GetSampleAccelerationInto(int index, OUTPUT& result) const;
};

}  // namespace varnoth
