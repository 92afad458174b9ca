#include "geometry/ellipsoid_type.hpp"

namespace varnoth {

namespace {

struct SEMI_AXES {
  double major;
  double minor;
};
/// Semi-axes (m) by id, including the guards.
constexpr SEMI_AXES AXES[] = {{0, 0},
                              {6377340.189, 6356034.447},
                              {6377397.155, 6356078.965},
                              {6378137.0, 6356752.3141},
                              {6378137.0, 6356752.315},
                              {0, 0}};

}  // namespace

template <class T>
EllipsoidType<T>& EllipsoidType<T>::operator=(const char* name) {
  this->Set(name);
  return *this;
}

template <class T>
void EllipsoidType<T>::CompleteRow() {
  static_assert(std::size(AXES) == std::size(VALUES) + 2);
  const SEMI_AXES& axes = AXES[this->id];
  semi_major_axis = static_cast<T>(axes.major);
  semi_minor_axis = static_cast<T>(axes.minor);
}

template class EllipsoidType<float>;
template class EllipsoidType<double>;
template class EllipsoidType<long double>;

}  // namespace varnoth
