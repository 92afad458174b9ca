#include "interpolation/everett.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace varnoth {

namespace {

/// One end's running product c of Everett's coefficient of order 2k + 1,
///
///     c = r · Π (r² - j²) / (2j (2j + 1)),  j = 1 … k,
///
/// and the elementary symmetric sums of the reciprocals of its 2k + 1 factors r + j, j = -k … k:
/// e1 = Σ 1/(r + a), e2 = Σ 1/((r + a)(r + b)) over pairs a < b. Then c' = c e1, and
/// c'' = 2 c e2, because the derivative counts every pair twice. Two more factors with the
/// reciprocals u and v need only e2 += e1 (u + v) + u v and e1 += u + v, not a double loop over all
/// factors.
template <class T>
class EVERETT_TERM {
 public:
  explicit EVERETT_TERM(T fraction) : r(fraction), coefficient(fraction) {}

  T Coefficient() const { return coefficient; }
  void Raise(T k) { coefficient = coefficient * ((r + k) * (r - k)) / (2 * k) / (2 * k + 1); }

 private:
  T r;
  T coefficient;
};

/// The same product with the sums for its derivatives.
template <class T>
class EVERETT_DERIVATIVES {
 public:
  explicit EVERETT_DERIVATIVES(T fraction) : term(fraction), r(fraction), e1(1 / fraction) {}

  T First() const { return term.Coefficient() * e1; }
  T Second() const { return 2 * e2 * term.Coefficient(); }
  void Raise(T k) {
    term.Raise(k);
    const T u = 1 / (r + k);
    const T v = 1 / (r - k);
    const T pair = u + v;
    e2 += e1 * pair + u * v;
    e1 += pair;
  }

 private:
  EVERETT_TERM<T> term;
  T r;
  T e1;
  T e2 = 0;
};

/// The factor of a difference at the right and at the left end, in a value or a derivative. The
/// fraction of the left end falls where x rises, so that its first derivative changes its sign.
template <int DERIVATIVE, class T>
class EVERETT_WEIGHTS {
 public:
  EVERETT_WEIGHTS(T r, T s) : right(r), left(s) {}

  void Raise(T k) {
    right.Raise(k);
    left.Raise(k);
  }
  T Right() const { return Of(right); }
  T Left() const { return DERIVATIVE == 1 ? -Of(left) : Of(left); }

 private:
  using TERM = std::conditional_t<DERIVATIVE == 0, EVERETT_TERM<T>, EVERETT_DERIVATIVES<T>>;
  static T Of(const TERM& term) {
    if constexpr (DERIVATIVE == 0) return term.Coefficient();
    if constexpr (DERIVATIVE == 1) return term.First();
    if constexpr (DERIVATIVE == 2) return term.Second();
  }

  TERM right;
  TERM left;
};

}  // namespace

template <class T>
void EVERETT<T>::Create(const ARRAY<POINT<T>>& series) {
  CreateQuiet(series);
  for (int i = first; i <= last; ++i) {
    GlobalLog.set(TRACE) << i;
    for (int k = 0; k < differences.GetRowRange().Count(); ++k)
      GlobalLog << " " << differences.Rows()[k][i];
    GlobalLog << "\n";
  }
}

template <class T>
void EVERETT<T>::CreateQuiet(const ARRAY<POINT<T>>& series) {
  first = series.GetFirstIndex();
  last = first - 1;  // no samples until the table is complete
  inner_begin = inner_end = 0;
  const int end = series.GetLastIndex();
  if (end <= first) RefuseSeries("EVERETT::Create", "more than 1 value needed.");
  const POINT<T>* const p = series.GetBase();
  x0 = p[first].x;
  dx = (p[end].x - x0) / static_cast<T>(end - first);
  if (order % 2 != 0 || order < 0) {
    GlobalLog.set(ALARM) << "EVERETT::Create: Everett interpolation only possible with even order, "
                            "not for given order "
                         << order << ".\n";
    throw INVALID_PARAMETER_VALUE();
  }
  // Abscissae that are equal or not numbers make no grid either.
  if (!IsEquidistant(series) || !std::isgreater(std::fabs(dx), T(0))) {
    RefuseSeries("EVERETT::Create", "Everett interpolation only possible on equidistant grid.");
  }

  half = order / 2;
  // Differences of an order above the sample count are all zero, and GetXi refuses to use them.
  const RANGE<int> rows(0, std::min(half, end - first) + 1);
  differences.NeedRanges(rows, series.GetRange());
  T* const* const row = differences.Rows();
  for (int i = first; i <= end; ++i) row[0][i] = p[i].y;
  for (int k = 1; k < rows.Count(); ++k) {
    const T* const below = row[k - 1];
    for (int i = first; i <= end; ++i) {
      const bool has_neighbours = i - first >= k && end - i >= k;
      row[k][i] =
          has_neighbours ? below[i - 1] - (below[i] + below[i]) + below[i + 1] : static_cast<T>(0);
    }
  }
  last = end;
  inner_begin = static_cast<T>(first + half);
  inner_end = static_cast<T>(RightBound() + 1);
}

template <class T>
bool EVERETT<T>::IsEquidistant(const ARRAY<POINT<T>>& series) const {
  if (series.GetLength() < 3) return true;
  const POINT<T>* const p = series.GetBase();
  const int begin = series.GetFirstIndex();
  const int end = series.GetLastIndex();
  const T d = p[begin + 1].x - p[begin].x;
  const T tolerance = static_cast<T>(1e-8) * d;
  for (int i = begin + 1; i < end; ++i) {
    if (!std::islessequal(std::fabs(p[i + 1].x - p[i].x - d), tolerance)) return false;
  }
  return std::islessequal(std::fabs(d - dx), tolerance);
}

template <class T>
int EVERETT<T>::GetXi(T x, T& r, T& s) const {
  const T steps = (x - x0) / dx;
  // An index beyond the range of int, or a NaN, counts as far outside.
  constexpr T FAR = 1e9F;
  const T bounded = std::isless(steps, FAR) ? (std::isgreater(steps, -FAR) ? steps : -FAR) : FAR;
  int i = static_cast<int>(std::floor(bounded));
  if (i < half + first) {
    i = half + first;
    GlobalLog.set(WARNING) << "EVERETT::GetXi: Forced interpolation left hand side.\n";
  }
  if (i > RightBound()) {
    i = RightBound();
    GlobalLog.set(WARNING) << "EVERETT::GetXi: Forced interpolation right hand side.\n";
  }
  if (i < first) {
    GlobalLog.set(ALARM) << "EVERETT::GetXi: " << last - first + 1
                         << " samples are too few for order " << 2 * half << ".\n";
    throw INVALID_PARAMETER_VALUE();
  }
  r = steps - static_cast<T>(i);
  s = 1 - r;
  if (std::isless(r, T(0)) || std::isgreater(r, T(1))) {
    GlobalLog.set(DEBUG) << "EVERETT::GetXi: Extrapolation needed (r=" << r << ", s=" << s
                         << ", i=" << i << ", ax=" << x << ").\n";
  }
  return i;
}

template <class T>
inline bool EVERETT<T>::FindInner(T x, INTERVAL& interval) const {
  const T steps = (x - x0) / dx;
  if (!std::isgreaterequal(steps, inner_begin) || !std::isless(steps, inner_end)) return false;
  int i = static_cast<int>(steps);
  if (static_cast<T>(i) > steps) --i;
  const T r = steps - static_cast<T>(i);
  interval = {i, r, 1 - r};
  return true;
}

template <class T>
template <int DERIVATIVE, int COUNT>
inline void EVERETT<T>::Evaluate(const EVERETT* curves, const INTERVAL& interval, T* values) {
  const auto& [i, r, s] = interval;
  const T dx = curves->dx;
  const T* difference[COUNT];
  for (int c = 0; c < COUNT; ++c) {
    const T* const sample = difference[c] = curves[c].Values(i);
    if constexpr (DERIVATIVE == 0) values[c] = sample[1] * r + sample[0] * s;
    if constexpr (DERIVATIVE == 1) values[c] = sample[1] - sample[0];
    if constexpr (DERIVATIVE == 2) values[c] = 0;
  }
  if (curves->half > 0) {
    const int next_order = curves->differences.GetColumnRange().Count();
    EVERETT_WEIGHTS<DERIVATIVE, T> weights(r, s);
    for (int k = 1; k <= curves->half; ++k) {
      weights.Raise(static_cast<T>(k));
      const T right = weights.Right();
      const T left = weights.Left();
      for (int c = 0; c < COUNT; ++c) {
        difference[c] += next_order;
        values[c] += difference[c][1] * right + difference[c][0] * left;
      }
    }
  }
  for (int c = 0; c < COUNT; ++c) {
    if constexpr (DERIVATIVE == 1) values[c] /= dx;
    if constexpr (DERIVATIVE == 2) values[c] /= dx * dx;
  }
}

template <class T>
template <int DERIVATIVE>
inline T EVERETT<T>::At(T x) const {
  INTERVAL interval;
  if (!FindInner(x, interval)) interval.i = GetXi(x, interval.r, interval.s);
  T value;
  Evaluate<DERIVATIVE, 1>(this, interval, &value);
  return value;
}

template <class T>
T EVERETT<T>::GetY(T x) const {
  return At<0>(x);
}

template <class T>
T EVERETT<T>::GetDerivedY(T x) const {
  return At<1>(x);
}

template <class T>
T EVERETT<T>::GetDerived2Y(T x) const {
  return At<2>(x);
}

template <class T>
bool EVERETT<T>::HasGridOf(const EVERETT& other) const {
  return x0 == other.x0 && dx == other.dx && half == other.half && first == other.first &&
         last == other.last;
}

template <class T>
template <int DERIVATIVE>
void EVERETT<T>::EvaluateAll(const EVERETT* curves, int count, T x, T* values) {
  INTERVAL interval;
  if (count == 3 && curves[1].HasGridOf(curves[0]) && curves[2].HasGridOf(curves[0]) &&
      curves->FindInner(x, interval)) {
    Evaluate<DERIVATIVE, 3>(curves, interval, values);
    return;
  }
  for (int c = 0; c < count; ++c) values[c] = curves[c].template At<DERIVATIVE>(x);
}

template <class T>
void EVERETT<T>::EvaluateAll(const EVERETT* curves, int count, int derivative, T x, T* values) {
  if (derivative == 0) EvaluateAll<0>(curves, count, x, values);
  if (derivative == 1) EvaluateAll<1>(curves, count, x, values);
  if (derivative == 2) EvaluateAll<2>(curves, count, x, values);
}

template class EVERETT<float>;
template class EVERETT<double>;

}  // namespace varnoth
