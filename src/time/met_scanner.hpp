#pragma once

#include "time/met_values.hpp"
#include "time/time_scanner.hpp"

namespace varnoth {

/// Scanner of mission elapsed times:
///
///     [white] [sign] days / hours : minutes : seconds [. fraction] [Z]
///
/// with any separators, for example
///
///     MET_SCANNER scanner;
///     scanner.Parse("-0001/23:59:59.5");
///     const int days = scanner.values.days;  // 1, with scanner.values.sign -1
///
/// White space in front makes the value positive, whatever sign follows. The scanner checks no
/// field's range and nothing after the fraction.
class MET_SCANNER final : public TIME_SCANNER {
 public:
  /// Fills `values`. Throws what TIME_SCANNER's primitives throw; `values` then has the fields
  /// before the fault, and 0 for the others.
  void Parse(const char* input);
  /// The same, but where `Parse` throws a text, this writes the text as a line at EXCEPTION and
  /// returns false. ERROR_ARGUMENT and ERROR_DATA pass through.
  bool Scan(const char* input) override;

  MET_VALUES values;

 private:
  int ScanSign();
};

}  // namespace varnoth
