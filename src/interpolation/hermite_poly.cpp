#include "interpolation/hermite_poly.hpp"

#include <cmath>
#include <cstdlib>

namespace varnoth {

namespace {

[[noreturn]] void EndProcess(int level, const char* text) {
  GlobalLog.set(level) << text;
  std::exit(1);
}

/// The Lagrange factor of a node i over the others of its support set, x[0] to x[order - 1], and
/// its derivatives at an abscissa t; `slope` is its first derivative at the node.
template <class T>
struct LAGRANGE_FACTOR {
  T value = 1;
  T first = 0;
  T second = 0;
  T slope = 0;

  LAGRANGE_FACTOR(const T* x, int order, int i, T t) {
    const auto ratio = [&](int j) { return (t - x[j]) / (x[i] - x[j]); };
    for (int j = 0; j < order; ++j) {
      if (j == i) continue;
      const T w = 1 / (x[i] - x[j]);
      value *= (t - x[j]) * w;
      slope += w;
      T product = 1;
      T sum = 0;
      for (int k = 0; k < order; ++k) {
        if (k == i || k == j) continue;
        product *= ratio(k);
        T rest = 1;
        for (int m = 0; m < order; ++m) {
          if (m != i && m != j && m != k) rest *= ratio(m);
        }
        sum += 1 / (x[i] - x[k]) * rest;
      }
      first += w * product;
      second += w * sum;
    }
  }
};

}  // namespace

template <class T>
void HERMITE_POLY<T>::CreateQuiet(const ARRAY<DPOINT<T>>& series) {
  this->NeedSamples(series, "HERMITE_POLY::Create");
  count = series.GetLength();
  for (ARRAY<T>* array : {&x, &y, &dy}) {
    array->NeedRange(RANGE<int>(0, count));
  }
  const DPOINT<T>* const p = series.begin();
  for (int i = 0; i < count; ++i) {
    x.GetBase()[i] = p[i].x;
    y.GetBase()[i] = p[i].y;
    dy.GetBase()[i] = p[i].dy;
  }
}

template <class T>
void HERMITE_POLY<T>::Evaluate(int n, int order, T& value, T& first, T& second, T abscissa) const {
  if (count == 0) RefuseSeries("HERMITE_POLY", "there are no samples.");
  value = first = second = 0;
  const T* const nodes = x.GetBase();
  if (std::isless(abscissa, nodes[0]) || std::isgreater(abscissa, nodes[n - 1])) {
    EndProcess(ALARM, "interpolation point outside of data constraints\n");
  }
  int place = 0;
  while (place < n && !std::isgreaterequal(nodes[place], abscissa)) ++place;
  int start = place - order / 2;
  if (start < 0) start = 0;
  // All nodes of the support set must exist.
  if (start + order > n) start = n - order;

  for (int i = start; i < start + order; ++i) {
    const LAGRANGE_FACTOR<T> factor(nodes + start, order, i - start, abscissa);
    const T L = factor.value;
    const T L1 = factor.first;
    const T L2 = factor.second;
    const T S = factor.slope;
    const T t = abscissa - nodes[i];
    const T yi = y.GetBase()[i];
    const T di = dy.GetBase()[i];
    const T A = 1 - 2 * t * S;
    const T B = 2 * t * L1 + L;
    const T C = 2 * (L1 * A - L * S);
    value += (yi * A + di * t) * (L * L);
    first += (yi * C + di * B) * L;
    second +=
        ((2 * A * L2 - 6 * L1 * S) * yi + (3 * L1 + 2 * L2 * t) * di) * L + (C * yi + B * di) * L1;
    if (std::isnan(value) || std::isnan(first) || std::isnan(second)) {
      EndProcess(WARNING, "interpolation failure !!!! Result is Nan!!\n");
    }
  }
}

template <class T>
T HERMITE_POLY<T>::Derivative(int which, T abscissa) const {
  T results[3];
  Evaluate(count, count, results[0], results[1], results[2], abscissa);
  return results[which];
}

template <class T>
T HERMITE_POLY<T>::GetY(T abscissa) const {
  return Derivative(0, abscissa);
}

template <class T>
T HERMITE_POLY<T>::GetDerivedY(T abscissa) const {
  return Derivative(1, abscissa);
}

template <class T>
T HERMITE_POLY<T>::GetDerived2Y(T abscissa) const {
  return Derivative(2, abscissa);
}

template class HERMITE_POLY<float>;
template class HERMITE_POLY<double>;

}  // namespace varnoth
