#pragma once

#include "foundation/array.hpp"
#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

/// Refuses a series for interpolation: logs "name: reason" at ALARM and throws
/// INVALID_PARAMETER_VALUE.
[[noreturn]] inline void RefuseSeries(const char* name, const char* reason) {
  GlobalLog.set(ALARM) << name << ": " << reason << "\n";
  throw INVALID_PARAMETER_VALUE();
}

/// What all interpolators have in common: they build once from a series of samples P (abscissa x,
/// ordinate y) and evaluate many times. T is the type of the arithmetic. The units are those of the
/// samples. The index range of a series may start anywhere, except for EVERETT.
///
///     ARRAY<POINT<double>> series(0, 11);
///     for (int k = 0; k < 11; ++k) series.begin()[k] = POINT<double>(10.0 * k, std::sin(k));
///     EVERETT<double> curve;  // or another interpolator of POINT
///     curve.SetOrder(8);
///     curve.Create(series);
///     const double speed = curve.GetDerivedY(45.0);
///
/// An evaluation that an interpolator does not have logs a line at ALARM and throws
/// ERROR_ALGORITHM. It ignores a setting that it does not have. Building throws ERROR_NO_MEMORY or
/// a text when it runs out of memory.
template <class T, class P>
class INTERPOLATION {
 public:
  using SAMPLE = P;

  INTERPOLATION() = default;
  INTERPOLATION(const INTERPOLATION&) = default;
  INTERPOLATION& operator=(const INTERPOLATION&) = default;
  virtual ~INTERPOLATION() = default;

  /// Builds the interpolator and logs what it builds; throws what CreateQuiet throws.
  virtual void Create(const ARRAY<P>& /*series*/) {}
  /// Builds it without those lines; still logs warnings and failures.
  virtual void CreateQuiet(const ARRAY<P>& /*series*/) {}
  /// Set the order, and the samples per piece, of the next Create.
  virtual void SetOrder(int /*order*/) {}
  virtual void SetSupportPoints(int /*count*/) {}
  /// Value, first and second derivative at an abscissa, in units of y, y/x and y/x².
  virtual T GetY(T /*x*/) const { Refuse("INTERPOLATION::GetY() shell not be called\n"); }
  virtual T GetDerivedY(T /*x*/) const {
    Refuse("INTERPOLATION::GetDerivedY() shell not be called\n");
  }
  virtual T GetDerived2Y(T /*x*/) const {
    Refuse("INTERPOLATION::GetDerived2Y() shell not be called\n");
  }
  /// Writes the values (derivative 0), first (1) or second derivatives (2) of the `count`
  /// interpolators from `first` on at an abscissa to as many `values`. Throws what they throw.
  template <class I>
  static void EvaluateAll(const I* first, int count, int derivative, T x, T* values) {
    for (int c = 0; c < count; ++c) {
      switch (derivative) {
        case 0:
          values[c] = first[c].GetY(x);
          break;
        case 1:
          values[c] = first[c].GetDerivedY(x);
          break;
        case 2:
          values[c] = first[c].GetDerived2Y(x);
          break;
      }
    }
  }
  /// The coefficients; each interpolator says what they mean. The pointer holds until the next
  /// Create.
  virtual const T* GetCoeffs() const { Refuse("INTERPOLATION::GetCoeffs() shall not be called\n"); }

 protected:
  /// Throws INVALID_PARAMETER_VALUE, after a line at ALARM, for a series without samples.
  static void NeedSamples(const ARRAY<P>& series, const char* name) {
    if (series.GetLength() <= 0) RefuseSeries(name, "there are no samples.");
  }

 private:
  [[noreturn]] static void Refuse(const char* text) {
    GlobalLog.set(ALARM) << text;
    throw ERROR_ALGORITHM();
  }
};

}  // namespace varnoth
