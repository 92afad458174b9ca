#pragma once

#include "time/met_values.hpp"
#include "time/time_scanner.hpp"

namespace varnoth {

/// Scanner of mission elapsed times:
///
///     [white] [sign] days / hours : minutes : seconds [. fraction] [Z]
///
/// with any separators. White space in front makes the value positive, whatever sign follows. No
/// field's range is checked.
class MET_SCANNER final : public TIME_SCANNER {
 public:
  /// Fills `values`. On a fault, which throws a text, they hold the fields so far and 0 behind.
  void Parse(const char* input);
  /// The same, but a fault with a text is logged and gives false.
  bool Scan(const char* input) override;

  MET_VALUES values;

 private:
  int ScanSign();
};

}  // namespace varnoth
