#pragma once

#include "interpolation/interpolation.hpp"

namespace varnoth {

/// The polynomial through all samples, in Newton's divided-difference form; its degree is the
/// number of samples less 1. The series must outlive the polynomial, whose nodes are read from it
/// at each evaluation. Repeated abscissae are not looked for: they leave infinities or NaN.
template <class T>
class POLYNOM : public INTERPOLATION<T, POINT<T>> {
 public:
  void Create(const ARRAY<POINT<T>>& series) override { CreateQuiet(series); }
  /// Of a series without samples an evaluation throws INVALID_PARAMETER_VALUE, behind a line at
  /// ALARM.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override;
  T GetY(T x) const override;
  T GetDerivedY(T x) const override;
  /// The second derivative up to degree 3; from degree 4 on the value is another one, since the
  /// nodes of this recurrence are the first three throughout. Results in use have been made with
  /// it.
  T GetDerived2Y(T x) const override;
  /// The degree + 1 coefficients of the Newton form.
  const T* GetCoeffs() const override { return coefficients.begin(); }

 private:
  const T* NeedCoefficients() const;

  int degree = -1;
  ARRAY<T> coefficients;
  const POINT<T>* points = nullptr;  ///< first element of the series; not owned
};

extern template class POLYNOM<float>;
extern template class POLYNOM<double>;

}  // namespace varnoth
