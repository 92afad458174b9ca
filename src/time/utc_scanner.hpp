#pragma once

#include "time/time_scanner.hpp"
#include "time/utc_values.hpp"

namespace varnoth {

/// The text forms of a UTC time.
enum UTC_FORM : int {
  UTC_FORM_UNKNOWN = 0,
  UTC_FORM_NAMED_MONTH = 1,  ///< 14-JAN-2004/10:11:12.000000
  UTC_FORM_CALENDAR = 2,     ///< Wed Jan 14 10:11:12 2004
  UTC_FORM_NUMBERS = 3,      ///< 2004-01-14/10:11:12.000000
  UTC_FORM_ISO = 4,          ///< 2004-01-14T10:11:12.000000
  UTC_FORM_COMPACT = 5,      ///< 20040114T101112
  UTC_FORM_NAMED_BLANK = 6,  ///< 14-JAN-2004 10:11:12.000000
};

/// Scanner of UTC times.
///
///     UTC_SCANNER scanner;
///     scanner.Scan("14-JAN-2004/10:11:12.5");
///     const int ms = scanner.values.millisecond;  // 500
///
/// The fraction is optional and may have up to 127 digits; only the first six count. A "Z" may end
/// the forms with a fraction. The scanner accepts second 60 to 62 at 23:59 of any day, and day 0;
/// it ignores what follows the fraction or, in the calendar form, the year.
class UTC_SCANNER final : public TIME_SCANNER {
 public:
  /// Fills `values` and gives true. Any other text throws ERROR_DATA, after lines at EXCEPTION.
  bool Scan(const char* input) override;
  /// The form of a text (UTC_FORM), from its length and the characters at fixed positions.
  virtual int DetectForm(const char* input) const;
  /// A month as a number (not checked) or a name.
  int GetMonth();

  UTC_VALUES values;

 private:
  /// Fills `values` from a text without oddities, as pools have them; false, with `values` as they
  /// were, for any other text.
  bool ScanPlain(const char* input);
  void ScanForm(int form);
  void ScanDate(int form);
  void ScanClock();
  void ScanTail(int form);
  void CheckFields() const;
};

}  // namespace varnoth
