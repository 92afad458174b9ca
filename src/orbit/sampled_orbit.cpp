#include "orbit/sampled_orbit.hpp"

#include <fcntl.h>

#include <cstdio>
#include <utility>

#include "foundation/errors.hpp"
#include "system/file_access.hpp"
#include "tables/log_table.hpp"

namespace varnoth {

namespace {

void CheckOutput(int wanted, int given) {
  if (given >= wanted) return;
  GlobalLog.set(ALARM) << "ORBIT: the result takes " << wanted << " coordinates, there are "
                       << given << "\n";
  throw ERROR_ARGUMENT();
}

/// A text file for a curve; numbers in scientific notation with 15 digits.
class CURVE_FILE {
 public:
  explicit CURVE_FILE(STRING file_name)
      : name(std::move(file_name)), file(OpenStream(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC)) {}
  void NeedFile() const {
    if (file != nullptr) return;
    GlobalLog.set(ALARM) << "ORBIT::SavePolynomial() can not create file: " << name << "\n";
    throw ERROR_CAN_NOT_CREATE_FILE();
  }
  void Line(double x, double y) const { std::fprintf(file.get(), "%.15e %.15e\n", x, y); }

 private:
  const STRING name;
  OWNED_FILE file;
};

}  // namespace

template <class T, class S>
template <class TIME>
void SAMPLED_ORBIT<T, S>::GiveReferenceTime(TIME& time) const {
  if constexpr (std::is_same_v<TIME, S>) {
    time = reference_time;
  } else {
    throw "not allowed time conversion";
  }
}

template <class T, class S>
template <class TIME>
T SAMPLED_ORBIT<T, S>::SecondsOf(const TIME& time) const {
  if constexpr (std::is_floating_point_v<TIME>) {
    return static_cast<T>(static_cast<double>(time));
  } else if constexpr (std::is_same_v<TIME, S>) {
    return static_cast<T>(SecondsFromReference(time));
  } else {
    throw "time operation not permitted";
  }
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::FillElements(DERIVATIVE derivative, T x, int count, E* values) const {
  if constexpr (std::is_same_v<E, T>) {
    Evaluate(derivative, x, 0, count, values);
  } else {
    for (int c = 0; c < count; ++c) {
      T value{};
      Evaluate(derivative, x, c, 1, &value);
      values[c] = static_cast<E>(value);
    }
  }
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::Fill(DERIVATIVE derivative, T x, VECTOR<E>& result) const {
  const int count = GetCoordinateCount();
  CheckOutput(count, result.GetLength());
  CheckOutput(count, InterpolatorCount());
  FillElements(derivative, x, count, result.begin());
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::Fill(DERIVATIVE derivative, T x, E* result) const {
  CheckOutput(POSITION_SIZE, InterpolatorCount());
  FillElements(derivative, x, POSITION_SIZE, result);
}

template <class T, class S>
void SAMPLED_ORBIT<T, S>::CheckSample(int coordinate, int index) const {
  if (coordinate >= 0 && coordinate < InterpolatorCount() && index >= 0 &&
      index < GetSampleCount()) {
    return;
  }
  GlobalLog.set(ALARM) << "ORBIT: there is no sample " << index << " of coordinate " << coordinate
                       << "\n";
  throw ERROR_ARGUMENT();
}

template <class T, class S>
template <class TIME>
void SAMPLED_ORBIT<T, S>::GetSampleTimeInto(int index, TIME& time) const {
  constexpr bool IN_SECONDS = std::is_same_v<S, double>;
  if constexpr (std::is_same_v<TIME, std::conditional_t<IN_SECONDS, T, S>>) {
    CheckSample(0, index);
    const auto seconds = static_cast<double>(SampleX(0, index));
    if constexpr (IN_SECONDS) {
      time = static_cast<T>(seconds + reference_time);
    } else {
      time = reference_time;
      // This gives back exactly the mission elapsed time of a sample before the reference.
      if constexpr (std::is_same_v<S, MISSION_ELAPSED_TIME>) {
        time += DURATION::FromSecondsByFloor(seconds);
      } else {
        time += seconds;
      }
    }
  }
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::GetRelativeSampleTimeInto(int index, E& time) const {
  if constexpr (std::is_same_v<E, T>) {
    CheckSample(0, index);
    time = SampleX(0, index);
  }
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::FillSample(int index, int count, E* values) const {
  if constexpr (std::is_same_v<E, T>) {
    CheckSample(count - 1, index);
    for (int c = 0; c < count; ++c) values[c] = SampleY(c, index);
  }
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::GetSampleInto(int index, VECTOR<E>& result) const {
  if constexpr (std::is_same_v<E, T>) CheckOutput(GetCoordinateCount(), result.GetLength());
  FillSample(index, GetCoordinateCount(), result.begin());
}

template <class T, class S>
template <class E>
void SAMPLED_ORBIT<T, S>::GetSampleInto(int index, E* result) const {
  FillSample(index, GetCoordinateCount(), result);
}

namespace {

/// Whether an output, VECTOR<E>& or E*&, has elements of T.
template <class T, class OUTPUT>
constexpr bool HAS_ELEMENT = std::is_same_v<std::remove_cvref_t<OUTPUT>, VECTOR<T>> ||
                             std::is_same_v<std::remove_cvref_t<OUTPUT>, T*>;

}  // namespace

template <class T, class S>
template <class OUTPUT>
void SAMPLED_ORBIT<T, S>::GetSampleVelocityInto(int index, OUTPUT&& result) const {
  if constexpr (HAS_ELEMENT<T, OUTPUT>) {
    CheckSample(0, index);
    this->GetVelocity(SampleX(0, index), result);
  }
}

template <class T, class S>
template <class OUTPUT>
void SAMPLED_ORBIT<T, S>::GetSampleAccelerationInto(int index, OUTPUT&& result) const {
  if constexpr (HAS_ELEMENT<T, OUTPUT>) {
    CheckSample(0, index);
    this->GetAcceleration(SampleX(0, index), result);
  }
}

#define VARNOTH_DEFINE(TIME)                                     \
  template <class T, class S>                                    \
  void SAMPLED_ORBIT<T, S>::GetReferenceTime(TIME& time) const { \
    GiveReferenceTime(time);                                     \
  }
VARNOTH_DEFINE(UNIVERSAL_TIME)
VARNOTH_DEFINE(MISSION_ELAPSED_TIME)
VARNOTH_DEFINE(double)
#undef VARNOTH_DEFINE

#define VARNOTH_DEFINE(GROUP, TIME, OUTPUT)                                \
  template <class T, class S>                                              \
  void SAMPLED_ORBIT<T, S>::GROUP(const TIME& time, OUTPUT result) const { \
    Fill(DERIVATIVE_OF_##GROUP, SecondsOf(time), result);                  \
  }
VARNOTH_EVALUATION_ENTRIES(VARNOTH_DEFINE, GetPosition)
VARNOTH_EVALUATION_ENTRIES(VARNOTH_DEFINE, GetVelocity)
VARNOTH_EVALUATION_ENTRIES(VARNOTH_DEFINE, GetAcceleration)
#undef VARNOTH_DEFINE

#define VARNOTH_DEFINE(OPERATION, OUTPUT)                               \
  template <class T, class S>                                           \
  void SAMPLED_ORBIT<T, S>::OPERATION(int index, OUTPUT result) const { \
    OPERATION##Into(index, result);                                     \
  }
VARNOTH_DEFINE(GetSampleTime, UNIVERSAL_TIME&)
VARNOTH_DEFINE(GetSampleTime, MISSION_ELAPSED_TIME&)
VARNOTH_SAMPLE_ENTRIES(VARNOTH_DEFINE)
#undef VARNOTH_DEFINE

template <class T, class S>
void SAMPLED_ORBIT<T, S>::SavePolynomial(const char* file, int coordinate, int count, double start,
                                         double end) const {
  CheckSample(coordinate, 0);
  const CURVE_FILE curve(file);
  const CURVE_FILE points(STRING(file) + ".pkt");
  curve.NeedFile();
  points.NeedFile();
  for (int i = 0; i < GetSampleCount(); ++i) {
    const auto t = static_cast<double>(SampleX(coordinate, i));
    if (start <= t && t <= end) points.Line(t, static_cast<double>(SampleY(coordinate, i)));
  }
  const double step = (end - start) / (static_cast<double>(count) - 1);
  double t = start;
  for (int i = 0; i < count; ++i, t += step) {
    T value{};
    Evaluate(DERIVATIVE_OF_GetPosition, static_cast<T>(t), coordinate, 1, &value);
    curve.Line(t, static_cast<double>(value));
  }
}

template <class T, class S>
void SAMPLED_ORBIT<T, S>::Print(int level, const char* title) const {
  GlobalLog.set(level) << title << "\n";
  CheckOutput(POSITION_SIZE, InterpolatorCount());
  LOG_TABLE table;
  table.rule();
  table.row("|t [s]|x [m]|y [m]|z [m]|ix [m]|iy [m]|iz [m]|dx [m]|dy [m]|dz [m]|");
  table.rule();
  VECTOR<double> position(0, GetCoordinateCount());
  const double* const p = position.begin();
  for (int i = 0; i < GetSampleCount(); ++i) {
    const auto time = static_cast<double>(SampleX(0, i));
    const double s[] = {static_cast<double>(SampleY(0, i)), static_cast<double>(SampleY(1, i)),
                        static_cast<double>(SampleY(2, i))};
    this->GetPosition(time, position);
    table.row("| %f | %e | %e | %e | %e | %e | %e | %e | %e | %e |", time, s[0], s[1], s[2], p[0],
              p[1], p[2], s[0] - p[0], s[1] - p[1], s[2] - p[2]);
  }
  table.rule();
  table.flush(level);
}

template class SAMPLED_ORBIT<float, double>;
template class SAMPLED_ORBIT<float, UNIVERSAL_TIME>;
template class SAMPLED_ORBIT<float, MISSION_ELAPSED_TIME>;
template class SAMPLED_ORBIT<double, double>;
template class SAMPLED_ORBIT<double, UNIVERSAL_TIME>;
template class SAMPLED_ORBIT<double, MISSION_ELAPSED_TIME>;

}  // namespace varnoth
