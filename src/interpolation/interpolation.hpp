#pragma once

#include "foundation/array.hpp"
#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

/// Throws INVALID_PARAMETER_VALUE, behind a line at ALARM, for a series that can not be
/// interpolated.
[[noreturn]] inline void RefuseSeries(const char* name, const char* reason) {
  GlobalLog.set(ALARM) << name << ": " << reason << "\n";
  throw INVALID_PARAMETER_VALUE();
}

/// What all interpolators have in common: built once from a series of samples P (abscissa x,
/// ordinate y), they are evaluated many times. T is the type of the arithmetic. A series' index
/// range need not start at 0.
///
/// An operation that an interpolator has not got logs at ALARM and throws ERROR_ALGORITHM.
template <class T, class P>
class INTERPOLATION {
 public:
  using SAMPLE = P;

  INTERPOLATION() = default;
  INTERPOLATION(const INTERPOLATION&) = default;
  INTERPOLATION& operator=(const INTERPOLATION&) = default;
  virtual ~INTERPOLATION() = default;

  /// Builds the interpolator and logs what it builds.
  virtual void Create(const ARRAY<P>& /*series*/) {}
  /// Builds it without those lines.
  virtual void CreateQuiet(const ARRAY<P>& /*series*/) {}
  virtual void SetOrder(int /*order*/) {}
  virtual void SetSupportPoints(int /*count*/) {}
  /// Value, first and second derivative at an abscissa.
  virtual T GetY(T /*x*/) const { Refuse("INTERPOLATION::GetY() shell not be called\n"); }
  virtual T GetDerivedY(T /*x*/) const {
    Refuse("INTERPOLATION::GetDerivedY() shell not be called\n");
  }
  virtual T GetDerived2Y(T /*x*/) const {
    Refuse("INTERPOLATION::GetDerived2Y() shell not be called\n");
  }
  /// The coefficients; what they mean is told by the interpolator.
  virtual const T* GetCoeffs() const { Refuse("INTERPOLATION::GetCoeffs() shall not be called\n"); }

 protected:
  /// Throws INVALID_PARAMETER_VALUE, behind a line at ALARM, for a series without samples.
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
