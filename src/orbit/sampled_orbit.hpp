#pragma once

#include <type_traits>

#include "orbit/orbit_base.hpp"

namespace varnoth {

/// What all orbits of samples with one coordinate type T and one time type S have in common,
/// whatever their interpolator: the evaluation operations in every combination of time and output,
/// the reference time, what stands at a sample, and the printing. They all lead to the one
/// operation `Evaluate`.
///
/// T: float or double. S: double seconds, UNIVERSAL_TIME or MISSION_ELAPSED_TIME.
template <class T, class S>
class SAMPLED_ORBIT : public ORBIT_BASE {
 public:
  using ORBIT_BASE::operator=;
  /// Time of the first sample.
  void GetReferenceTime(UNIVERSAL_TIME& time) const override;
  void GetReferenceTime(MISSION_ELAPSED_TIME& time) const override;
  void GetReferenceTime(double& time) const override;
  void SetReferenceTime(const UNIVERSAL_TIME& time) override { StoreReferenceTime(time); }
  void SetReferenceTime(const MISSION_ELAPSED_TIME& time) override { StoreReferenceTime(time); }
  void SetReferenceTime(double time) requires std::is_same_v<S, double> {
    StoreReferenceTime(time);
  }

  /// Value (m), first (m/s) and second derivative (m/s²) at a time. A float, double or long double
  /// time is seconds from the reference time. A VECTOR takes GetCoordinateCount() elements and must
  /// have that many, a raw array exactly three, whatever the orbit has; ERROR_ARGUMENT otherwise.
  /// Nothing is allocated.
#define VARNOTH_DECLARE(GROUP, TIME, OUTPUT) \
  void GROUP(const TIME& time, OUTPUT result) const override;
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetPosition)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetVelocity)
  VARNOTH_EVALUATION_ENTRIES(VARNOTH_DECLARE, GetAcceleration)
#undef VARNOTH_DECLARE

  /// What stands at a sample: its absolute time, its seconds from the reference time, its values,
  /// and the derivatives there. Of each three element types only that of T has an effect. Values
  /// take GetCoordinateCount() elements, derivatives in a raw array three. Throws ERROR_ARGUMENT
  /// for an index that is no sample's.
  void GetSampleTime(int index, UNIVERSAL_TIME& result) const override;
  void GetSampleTime(int index, MISSION_ELAPSED_TIME& result) const override;
#define VARNOTH_DECLARE(OPERATION, OUTPUT) void OPERATION(int index, OUTPUT result) const override;
  VARNOTH_SAMPLE_ENTRIES(VARNOTH_DECLARE)
#undef VARNOTH_DECLARE

  using ORBIT_BASE::SavePolynomial;
  /// Writes `count` values of a coordinate's curve from `start` to `end` (seconds from the
  /// reference time) to `file`, and the support points in that interval to `file` with ".pkt"
  /// behind: time, blank, value. Throws ERROR_CAN_NOT_CREATE_FILE.
  void SavePolynomial(const char* file, int coordinate, int count, double start,
                      double end) const override;
  /// Logs samples, interpolated positions and differences as a table; for three coordinates.
  void Print(int level, const char* title) const override;

 protected:
  /// Which derivative of the interpolators an operation asks for.
  enum DERIVATIVE {
    DERIVATIVE_OF_GetPosition,
    DERIVATIVE_OF_GetVelocity,
    DERIVATIVE_OF_GetAcceleration
  };

  /// Gives `count` coordinates from `first` on at x seconds from the reference time.
  virtual void Evaluate(DERIVATIVE derivative, T x, int first, int count, T* values) const = 0;
  /// How many coordinates `Evaluate` has.
  virtual int InterpolatorCount() const = 0;
  /// Time and value of an existing sample.
  virtual T SampleX(int coordinate, int index) const = 0;
  virtual T SampleY(int coordinate, int index) const = 0;

  template <class TIME>
  void StoreReferenceTime(const TIME& time) {
    if constexpr (std::is_same_v<TIME, S>) reference_time = time;
  }

  /// An epoch's way from the reference time, in seconds.
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
