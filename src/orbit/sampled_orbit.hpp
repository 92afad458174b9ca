#pragma once

#include <type_traits>

#include "orbit/orbit_base.hpp"

namespace varnoth {

/// What all orbits of samples with one coordinate type T and one time type S have in common,
/// whatever their interpolator: the evaluation operations in every combination of time and output,
/// the reference time, access to single samples, and printing. The evaluations all go through
/// `Evaluate`.
///
///     double state[6];
///     orbit.GetPosition(12.5, state);  // s from the reference time; m
///     orbit.GetVelocity(12.5, state + 3);
///     double first = 0.0;
///     orbit.GetRelativeSampleTime(0, first);
///
/// T: float or double. S: double seconds, UNIVERSAL_TIME or MISSION_ELAPSED_TIME.
template <class T, class S>
class SAMPLED_ORBIT : public ORBIT_BASE {
 public:
  using ORBIT_BASE::operator=;
  /// The time from which the seconds of the samples count: that of the first sample, unless set
  /// since. Throws the text "not allowed time conversion" for a kind of time other than S.
  void GetReferenceTime(UNIVERSAL_TIME& time) const override;
  void GetReferenceTime(MISSION_ELAPSED_TIME& time) const override;
  void GetReferenceTime(double& time) const override;
  /// Moves the whole orbit to another reference time: the samples keep their seconds. Does nothing
  /// for a kind of time other than S.
  void SetReferenceTime(const UNIVERSAL_TIME& time) override { StoreReferenceTime(time); }
  void SetReferenceTime(const MISSION_ELAPSED_TIME& time) override { StoreReferenceTime(time); }
  void SetReferenceTime(double time) requires std::is_same_v<S, double> {
    StoreReferenceTime(time);
  }

  /// Value (m), first (m/s) and second derivative (m/s²) at a time. A float, double or long double
  /// time is seconds from the reference time, rounded to T. A VECTOR receives GetCoordinateCount()
  /// elements and must have at least as many; a raw array receives exactly three. Allocates
  /// nothing.
  ///
  /// Throws ERROR_ARGUMENT, after a line at ALARM, for a VECTOR that is too short and for an orbit
  /// with fewer coordinates than the result; the text "time operation not permitted" for a time
  /// object of a kind other than S; and what the interpolator throws.
#define VARNOTH_DECLARE(GROUP, TIME, OUTPUT) \
  void GROUP(const TIME& time, OUTPUT result) const override;
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetPosition)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetVelocity)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetAcceleration)
#undef VARNOTH_DECLARE

  /// Data of a sample, 0 <= index < GetSampleCount(): its absolute time, its seconds from the
  /// reference time, its values (m), and the velocity (m/s) and acceleration (m/s²) there. Only the
  /// form with elements of T has an effect; for the absolute time of an orbit on time objects, only
  /// the form with S. The other forms leave their output untouched. Values take
  /// GetCoordinateCount() elements; velocity and acceleration take as many in a VECTOR and three in
  /// a raw array. Throws ERROR_ARGUMENT, after a line at ALARM, for an index out of range and a
  /// VECTOR that is too short, and what the evaluation throws.
  void GetSampleTime(int index, UNIVERSAL_TIME& result) const override;
  void GetSampleTime(int index, MISSION_ELAPSED_TIME& result) const override;
#define VARNOTH_DECLARE(OPERATION, OUTPUT) void OPERATION(int index, OUTPUT result) const override;
  VARNOTH_SAMPLE_ENTRIES(VARNOTH_DECLARE)
#undef VARNOTH_DECLARE

  using ORBIT_BASE::SavePolynomial;
  /// Writes `count` values of a coordinate's curve, evenly from `start` to `end` (seconds from the
  /// reference time), to `file`, and the samples in that interval to `file` with ".pkt" appended.
  /// Each line is time, blank, value. A `count` of 1 divides by zero. Throws, after a line at
  /// ALARM, ERROR_ARGUMENT for a coordinate that the orbit does not have, and
  /// ERROR_CAN_NOT_CREATE_FILE; and what the interpolator throws.
  void SavePolynomial(const char* file, int coordinate, int count, double start,
                      double end) const override;
  /// Logs samples, interpolated positions and differences of the first three coordinates as a
  /// table. Throws ERROR_ARGUMENT, after a line at ALARM, if the orbit has fewer.
  void Print(int level, const char* title) const override;

 protected:
  /// The order of the interpolators' derivative that an operation asks for.
  enum DERIVATIVE {
    DERIVATIVE_OF_GetPosition,
    DERIVATIVE_OF_GetVelocity,
    DERIVATIVE_OF_GetAcceleration
  };

  /// Writes `count` coordinates from `first` on at x seconds from the reference time to `values`.
  virtual void Evaluate(DERIVATIVE derivative, T x, int first, int count, T* values) const = 0;
  /// Number of coordinates that `Evaluate` has.
  virtual int InterpolatorCount() const = 0;
  /// Time (s from the reference time) and value of a sample, which must exist.
  virtual T SampleX(int coordinate, int index) const = 0;
  virtual T SampleY(int coordinate, int index) const = 0;

  template <class TIME>
  void StoreReferenceTime(const TIME& time) {
    if constexpr (std::is_same_v<TIME, S>) reference_time = time;
  }

  /// Seconds from the reference time to an epoch.
  double SecondsFromReference(const S& epoch) const {
    if constexpr (std::is_same_v<S, double>) {
      return epoch - reference_time;
    } else {
      return (epoch - reference_time).ToSeconds();
    }
  }

  S reference_time{};

 private:
  static constexpr int POSITION_SIZE = 3;

  template <class TIME>
  T SecondsOf(const TIME& time) const;
  template <class E>
  void Fill(DERIVATIVE derivative, T x, VECTOR<E>& result) const;
  template <class E>
  void Fill(DERIVATIVE derivative, T x, E* result) const;
  template <class E>
  void FillElements(DERIVATIVE derivative, T x, int count, E* values) const;
  template <class TIME>
  void GiveReferenceTime(TIME& time) const;
  void CheckSample(int coordinate, int index) const;

  template <class TIME>
  void GetSampleTimeInto(int index, TIME& time) const;
  template <class E>
  void GetRelativeSampleTimeInto(int index, E& time) const;
  template <class E>
  void GetSampleInto(int index, VECTOR<E>& result) const;
  template <class E>
  void GetSampleInto(int index, E* result) const;
  template <class E>
  void FillSample(int index, int count, E* values) const;
  template <class OUTPUT>
  void GetSampleVelocityInto(int index, OUTPUT&& result) const;
  template <class OUTPUT>
  void GetSampleAccelerationInto(int index, OUTPUT&& result) const;
};

extern template class SAMPLED_ORBIT<float, double>;
extern template class SAMPLED_ORBIT<float, UNIVERSAL_TIME>;
extern template class SAMPLED_ORBIT<float, MISSION_ELAPSED_TIME>;
extern template class SAMPLED_ORBIT<double, double>;
extern template class SAMPLED_ORBIT<double, UNIVERSAL_TIME>;
extern template class SAMPLED_ORBIT<double, MISSION_ELAPSED_TIME>;

}  // namespace varnoth
