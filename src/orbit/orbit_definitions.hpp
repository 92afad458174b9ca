#pragma once

#include <cmath>
#include <cstdio>
#include <memory>

#include "foundation/errors.hpp"
#include "framework/tables/log_table.hpp"
#include "orbit/orbit.hpp"

namespace varnoth {

namespace orbit_detail {

/// Element type of an output: of VECTOR<E> or E*.
template <class OUTPUT>
struct ELEMENT_OF;
template <class E>
struct ELEMENT_OF<VECTOR<E>> {
  using type = E;
};
template <class E>
struct ELEMENT_OF<E*> {
  using type = E;
};

[[noreturn]] inline void RefuseOutput(int wanted, int given) {
  GlobalLog.set(ALARM) << "ORBIT: the result takes " << wanted << " coordinates, there are "
                       << given << "\n";
  throw ERROR_ARGUMENT();
}

/// A text file for a curve; numbers in scientific notation with 15 digits.
class CURVE_FILE {
 public:
  explicit CURVE_FILE(const STRING& name) : file(std::fopen(name.c_str(), "we")) {
    if (file != nullptr) return;
    GlobalLog.set(ALARM) << "ORBIT::SavePolynomial() can not create file: " << name << "\n";
    throw ERROR_CAN_NOT_CREATE_FILE();
  }
  void Line(double x, double y) const { std::fprintf(file.get(), "%.15e %.15e\n", x, y); }

 private:
  struct FILE_CLOSER {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
  };
  std::unique_ptr<std::FILE, FILE_CLOSER> file;
};

}  // namespace orbit_detail

template <class T, class S, class I, class P>
void ORBIT<T, S, I, P>::Create() {
  const int count = GetCoordinateCount();
  if (interpolators.Resize(RANGE<int>(0, count)) != ARRAY_OK) throw ERROR_NO_MEMORY();
  for (int c = 0; c < count; ++c) {
    I& interpolator = interpolators.GetElementBase(0)[c];
    interpolator.SetOrder(poly_fit_order);
    interpolator.SetSupportPoints(support_point_count);
    interpolator.CreateQuiet(samples.GetElementBase(0)[c]);
  }
}

template <class T, class S, class I, class P>
int ORBIT<T, S, I, P>::GetSampleCount() const {
  return samples.GetLength() > 0 ? samples.GetElementBase(0)[0].GetLength() : 0;
}

template <class T, class S, class I, class P>
ORBIT_BASE& ORBIT<T, S, I, P>::operator=(const ORBIT_BASE& source) {
  GlobalLog.set(DEBUG)
      << "virtual ORBIT_BASE& ORBIT<T,S,I,P>::operator=( const ORBIT_BASE& aorbit )\n";
  const auto* orbit = dynamic_cast<const ORBIT*>(&source);
  if (orbit == nullptr) {
    GlobalLog.set(ALARM) << "ORBIT: an orbit of another class can not be assigned\n";
    throw ERROR_ARGUMENT();
  }
  ORBIT_BASE::operator=(source);
  if (orbit == this) return *this;
  samples = orbit->samples;
  reference_time = orbit->reference_time;
  Create();
  return *this;
}

template <class T, class S, class I, class P>
template <class TIME>
void ORBIT<T, S, I, P>::GiveReferenceTime(TIME& time) const {
  if constexpr (std::is_same_v<TIME, S>) {
    time = reference_time;
  } else {
    throw "not allowed time conversion";
  }
}

template <class T, class S, class I, class P>
template <class TIME>
double ORBIT<T, S, I, P>::SecondsOf(const TIME& time) const {
  if constexpr (std::is_floating_point_v<TIME>) {
    return static_cast<double>(time);
  } else if constexpr (std::is_same_v<TIME, S>) {
    return (time - reference_time).ToSeconds();
  } else {
    throw "time operation not permitted";
  }
}

template <class T, class S, class I, class P>
template <class EVALUATION, class TIME, class OUTPUT>
void ORBIT<T, S, I, P>::Evaluate(EVALUATION evaluation, const TIME& time, OUTPUT& result) const {
  const T x = static_cast<T>(SecondsOf(time));
  const I* const interpolator = interpolators.GetElementBase(0);
  Fill(result, [&](int c) { return evaluation(interpolator[c], x); });
}

template <class T, class S, class I, class P>
template <class E, class ELEMENT>
void ORBIT<T, S, I, P>::Fill(VECTOR<E>& result, const ELEMENT& element) const {
  const int count = GetCoordinateCount();
  if (result.GetLength() < count || interpolators.GetLength() < count) {
    orbit_detail::RefuseOutput(result.GetLength(), interpolators.GetLength());
  }
  E* const values = result.GetElementBase(0);
  for (int c = 0; c < count; ++c) values[c] = static_cast<E>(element(c));
}

template <class T, class S, class I, class P>
template <class E, class ELEMENT>
void ORBIT<T, S, I, P>::Fill(E*& result, const ELEMENT& element) const {
  if (interpolators.GetLength() < POSITION_SIZE) {
    orbit_detail::RefuseOutput(POSITION_SIZE, interpolators.GetLength());
  }
  for (int c = 0; c < POSITION_SIZE; ++c) result[c] = static_cast<E>(element(c));
}

template <class T, class S, class I, class P>
const P& ORBIT<T, S, I, P>::SampleAt(int coordinate, int index) const {
  if (coordinate < 0 || coordinate >= samples.GetLength() || index < 0 ||
      index >= GetSampleCount()) {
    GlobalLog.set(ALARM) << "ORBIT: there is no sample " << index << " of coordinate " << coordinate
                         << "\n";
    throw ERROR_ARGUMENT();
  }
  return samples.GetElementBase(0)[coordinate].GetElementBase(0)[index];
}

template <class T, class S, class I, class P>
template <class TIME>
void ORBIT<T, S, I, P>::GetSampleTimeInto(int index, TIME& time) const {
  if constexpr (std::is_same_v<S, double> && std::is_same_v<TIME, T>) {
    time = static_cast<T>(static_cast<double>(SampleAt(0, index).x) + reference_time);
  } else if constexpr (std::is_same_v<S, UNIVERSAL_TIME> && std::is_same_v<TIME, S>) {
    time = reference_time;
    time += static_cast<double>(SampleAt(0, index).x);
  } else if constexpr (std::is_same_v<S, MISSION_ELAPSED_TIME> && std::is_same_v<TIME, S>) {
    time = reference_time + static_cast<double>(SampleAt(0, index).x);
  }
}

template <class T, class S, class I, class P>
template <class E>
void ORBIT<T, S, I, P>::GetRelativeSampleTimeInto(int index, E& time) const {
  if constexpr (std::is_same_v<E, T>) time = SampleAt(0, index).x;
}

template <class T, class S, class I, class P>
template <class OUTPUT>
void ORBIT<T, S, I, P>::GetSampleInto(int index, OUTPUT& result) const {
  if constexpr (std::is_same_v<typename orbit_detail::ELEMENT_OF<OUTPUT>::type, T>) {
    Fill(result, [&](int c) { return SampleAt(c, index).y; });
  }
}

template <class T, class S, class I, class P>
template <class OUTPUT>
void ORBIT<T, S, I, P>::GetSampleVelocityInto(int index, OUTPUT& result) const {
  if constexpr (std::is_same_v<typename orbit_detail::ELEMENT_OF<OUTPUT>::type, T>) {
    this->GetVelocity(SampleAt(0, index).x, result);
  }
}

template <class T, class S, class I, class P>
template <class OUTPUT>
void ORBIT<T, S, I, P>::GetSampleAccelerationInto(int index, OUTPUT& result) const {
  if constexpr (std::is_same_v<typename orbit_detail::ELEMENT_OF<OUTPUT>::type, T>) {
    this->GetAcceleration(SampleAt(0, index).x, result);
  }
}

template <class T, class S, class I, class P>
void ORBIT<T, S, I, P>::SavePolynomial(const char* file, int coordinate, int count, double start,
                                       double end) const {
  const orbit_detail::CURVE_FILE curve(file);
  const orbit_detail::CURVE_FILE points(STRING(file) + ".pkt");
  for (int i = 0; i < GetSampleCount(); ++i) {
    const P& sample = SampleAt(coordinate, i);
    if (start <= static_cast<double>(sample.x) && static_cast<double>(sample.x) <= end) {
      points.Line(static_cast<double>(sample.x), static_cast<double>(sample.y));
    }
  }
  if (coordinate < 0 || coordinate >= interpolators.GetLength()) SampleAt(coordinate, 0);
  const I& interpolator = interpolators.GetElementBase(0)[coordinate];
  const double step = (end - start) / (count - 1);
  double t = start;
  for (int i = 0; i < count; ++i, t += step) {
    curve.Line(t, static_cast<double>(interpolator.GetY(static_cast<T>(t))));
  }
}

template <class T, class S, class I, class P>
void ORBIT<T, S, I, P>::Print(int level, const char* title) const {
  GlobalLog.set(level) << title << "\n";
  LOG_TABLE table;
  table.rule();
  table.row("|t [s]|x [m]|y [m]|z [m]|ix [m]|iy [m]|iz [m]|dx [m]|dy [m]|dz [m]|");
  table.rule();
  VECTOR<T> sample(0, GetCoordinateCount());
  VECTOR<double> position(0, GetCoordinateCount());
  if (GetCoordinateCount() < POSITION_SIZE) {
    orbit_detail::RefuseOutput(POSITION_SIZE, GetCoordinateCount());
  }
  const T* const s = sample.GetElementBase(0);
  const double* const p = position.GetElementBase(0);
  for (int i = 0; i < GetSampleCount(); ++i) {
    T time{};
    this->GetRelativeSampleTime(i, time);
    this->GetSample(i, sample);
    this->GetPosition(static_cast<double>(time), position);
    table.row("| %f | %e | %e | %e | %e | %e | %e | %e | %e | %e |", static_cast<double>(time),
              static_cast<double>(s[0]), static_cast<double>(s[1]), static_cast<double>(s[2]), p[0],
              p[1], p[2], static_cast<double>(s[0]) - p[0], static_cast<double>(s[1]) - p[1],
              static_cast<double>(s[2]) - p[2]);
  }
  table.rule();
  table.flush(level);
}

}  // namespace varnoth
