#pragma once

#include "enumerations/enum_base.hpp"

namespace varnoth {

/// The reference ellipsoids by name, with their semi-axes in metres, for float, double and long
/// double. The values are rounded to double first; float rows round them once more, long double
/// rows have no further digits. In float GRS80 and WGS84 are the same.
///
///     const EllipsoidType<double> wgs84("WGS84");  // its semi_major_axis is 6378137 m
///
/// Unlike other enumerations of the family, its lookup finds the first guard, "-", whose axes
/// are 0.
template <class T>
class EllipsoidType : public BASIC::TYPES::ENUM<EllipsoidType<T>> {
 public:
  static constexpr const char* KEY_WORD = "ellipsoid_type";
  static constexpr bool GUARDS_MATCH = true;
  static constexpr const char* VALUES[] = {"Airy", "Bessel", "GRS80", "WGS84"};

  EllipsoidType() = default;
  /// The row of a name. Throws ERROR_ENUM_BASE_INVALID_VALUE for a name that is in no row.
  explicit EllipsoidType(const STRING& name, bool case_sensitive = false)
      : EllipsoidType(EllipsoidType::RowOf(name, case_sensitive)) {}
  EllipsoidType(const EllipsoidType&) = default;
  EllipsoidType& operator=(const EllipsoidType&) = default;
  /// Takes the row of a name, in upper or lower case; throws as the constructor does.
  virtual EllipsoidType& operator=(const char* name);

  T semi_major_axis = 0;
  T semi_minor_axis = 0;

 private:
  friend BASIC::TYPES::ENUM<EllipsoidType>;
  void CompleteRow();
};

extern template class EllipsoidType<float>;
extern template class EllipsoidType<double>;
extern template class EllipsoidType<long double>;

}  // namespace varnoth
