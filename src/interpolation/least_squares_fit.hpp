#pragma once

#include <algorithm>
#include <cmath>

#include "interpolation/interpolation.hpp"
#include "interpolation/numerics/svdfit.hpp"

namespace varnoth {

/// What the least-squares interpolators CHEBY_POLY and POLYNOM_FIT have in common: an unweighted
/// fit of order + 1 functions of a basis F to the samples by singular value decomposition. F is one
/// of the bases of numerics/svdfit.hpp. A derived interpolator implements `Build`, here for two
/// coefficients c:
///
///     void Build(const ARRAY<POINT<double>>& series, bool quiet) override {
///       UseSeries(series, "LINE", " -> ");
///       Solve(quiet, c, [](double x) { return x; }, "LINE: not enough memory.");
///     }
///
/// With k the order and n samples a fit takes O(n k²). Each interpolator states its error and what
/// it gives outside the samples.
template <class T, class F>
class LEAST_SQUARES_FIT : public INTERPOLATION<T, POINT<T>> {
 public:
  /// Order of the next fit, 0 at first. Fewer than order + 1 samples lower it for this fit and the
  /// later ones, with a line at WARNING.
  void SetOrder(int wanted) override { order = wanted; }
  /// Logs chi², and what the interpolator adds to it, at PARAMETER.
  void Create(const ARRAY<POINT<T>>& series) override { BuildWhole(series, false); }
  /// Throws INVALID_PARAMETER_VALUE, after a line at ALARM, for no samples, a negative order, and
  /// an abscissa that is NaN. A decomposition that does not converge ends the process by `nrerror`.
  void CreateQuiet(const ARRAY<POINT<T>>& series) override { BuildWhole(series, true); }

 protected:
  /// Fits the series with the wanted order.
  virtual void Build(const ARRAY<POINT<T>>& series, bool quiet) = 0;
  /// Order of the current fit. Throws INVALID_PARAMETER_VALUE, after a line at ALARM, if there is
  /// none.
  int Degree() const {
    if (degree < 0) RefuseSeries("LEAST_SQUARES_FIT", "there are no samples.");
    return degree;
  }

  /// Takes the series and lowers the order to what it allows, with a line at WARNING. `name` and
  /// `arrow` are words of that line. Throws what CreateQuiet lists.
  void UseSeries(const ARRAY<POINT<T>>& series, const char* name, const char* arrow) {
    this->NeedSamples(series, name);
    if (order < 0) {
      GlobalLog.set(ALARM) << name << ": there is no polynomial of order " << order << "\n";
      throw INVALID_PARAMETER_VALUE();
    }
    count = series.GetLength();
    points = series.begin();
    if (std::any_of(points, points + count, [](const POINT<T>& p) { return std::isnan(p.x); })) {
      RefuseSeries(name, "an abscissa is no number.");
    }
    if (count <= order) {
      GlobalLog.set(WARNING) << name << ": reduce polynomial fit order " << order << arrow
                             << count - 1 << "\n";
      order = count - 1;
    }
  }

  /// Fits the series of `UseSeries` with its abscissae mapped by `scale` and writes the order + 1
  /// coefficients to `result`. Throws ERROR_NO_MEMORY, the text `no_memory` or the text of ARRAY.
  template <class SCALE>
  void Solve(bool quiet, T* result, SCALE scale, const char* no_memory) {
    for (ARRAY<T>* array : {&x, &y, &sig}) Size(*array, 1, count, no_memory);
    Size(fit, 1, order + 1, no_memory);
    for (int i = 0; i < count; ++i) {
      x.begin()[i] = scale(points[i].x);
      y.begin()[i] = points[i].y;
      sig.begin()[i] = 1;
    }
    svdfit.Resize(count, order + 1);
    const auto solve = quiet ? &SVDFIT<T, F>::FitQuiet : &SVDFIT<T, F>::Fit;
    (svdfit.*solve)(x.GetBase(), y.GetBase(), sig.GetBase(), count, fit.GetBase(), order + 1,
                    chisq);
    std::copy_n(fit.begin(), order + 1, result);
  }

  /// Sizes an array; throws the text `no_memory` on failure.
  static void Size(ARRAY<T>& array, int first, int size, const char* no_memory) {
    array.NeedRange(RANGE<int>(first, size), no_memory);
  }

  int order = 0;                     ///< for the next fit
  int count = 0;                     ///< of samples
  const POINT<T>* points = nullptr;  ///< first sample; not owned
  ARRAY<T> x;
  ARRAY<T> y;
  ARRAY<T> sig;
  ARRAY<T> fit;
  SVDFIT<T, F> svdfit;
  T chisq = 0;

 private:
  void BuildWhole(const ARRAY<POINT<T>>& series, bool quiet) {
    degree = -1;
    Build(series, quiet);
    degree = order;
  }

  int degree = -1;
};

}  // namespace varnoth
