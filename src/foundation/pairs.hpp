#pragma once

#include <utility>

#include "foundation/string.hpp"

namespace varnoth {

/// Base of the pair classes.
template <class T>
class TUPLE {
 public:
  TUPLE() = default;
  TUPLE(const TUPLE&) = default;
  TUPLE& operator=(const TUPLE&) = default;
  virtual ~TUPLE() = default;
};

/// A pair of texts.
template <>
class TUPLE<STRING> {
 public:
  TUPLE() = default;
  TUPLE(STRING first_text, STRING second_text)
      : first(std::move(first_text)), second(std::move(second_text)) {}
  TUPLE(const TUPLE&) = default;
  TUPLE& operator=(const TUPLE&) = default;
  virtual ~TUPLE() = default;

  STRING first;
  STRING second;
};

/// A sample, abscissa and ordinate: `POINT<double>(0.5, 7071000.0)`.
template <class T>
class POINT : public TUPLE<T> {
 public:
  POINT() = default;
  POINT(T abscissa, T ordinate) : x(abscissa), y(ordinate) {}

  T x{};
  T y{};
};

/// A sample with its derivative dy/dx.
template <class T>
class DPOINT : public POINT<T> {
 public:
  DPOINT() = default;
  DPOINT(T abscissa, T ordinate, T derivative) : POINT<T>(abscissa, ordinate), dy(derivative) {}

  T dy{};
};

/// Two values of possibly different types.
template <class A, class B>
class INDEX {
 public:
  INDEX() = default;
  INDEX(A first_value, B second_value) : first(first_value), second(second_value) {}
  INDEX(const INDEX&) = default;
  INDEX& operator=(const INDEX&) = default;
  virtual ~INDEX() = default;

  A first{};
  B second{};
};

/// A first index and a count: `RANGE<int>(1, 3)` stands for 1, 2, 3. `Last()` of an empty range is
/// one less than `First()`.
template <class T>
class RANGE : public INDEX<T, T> {
 public:
  using INDEX<T, T>::INDEX;

  T Count() const { return this->second; }
  T First() const { return this->first; }
  T Last() const { return this->first + this->second - 1; }
  friend bool operator==(const RANGE& a, const RANGE& b) {
    return a.first == b.first && a.second == b.second;
  }
};

}  // namespace varnoth
