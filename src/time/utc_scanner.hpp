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

/// Scanner of UTC times. The fraction may be left out or have any number of digits, of which six
/// count, and a "Z" may end the forms with a fraction. A second of 60 to 62 is taken at the end of
/// any day.
class UTC_SCANNER final : public TIME_SCANNER {
 public:
  /// Fills `values` and gives true; a text that is no valid time is logged and throws ERROR_DATA.
  bool Scan(const char* input) override;
  /// The form of a text by its length and the characters at fixed positions (UTC_FORM).
  virtual int DetectForm(const char* input) const;
  /// A month as a number or a name.
  int GetMonth();

  UTC_VALUES values;

 private:
  void ScanForm(int form);
  void ScanDate(int form);
  void ScanClock();
  void ScanTail(int form);
  void CheckFields() const;
};

}  // namespace varnoth
