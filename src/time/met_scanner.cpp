#include "time/met_scanner.hpp"

#include "log/log.hpp"

namespace varnoth {

int MET_SCANNER::ScanSign() {
  TIME_TOKEN token;
  NeedToken(token);
  switch (token.type) {
    case token_sign_plus:
      return 1;
    case token_sign_minus:
      return -1;
    case token_white:
      GetSign();
      return 1;
    default:
      Unget(token);
      return 1;
  }
}

void MET_SCANNER::Parse(const char* input) {
  Start(input);
  values = MET_VALUES();
  values.sign = ScanSign();
  values.days = GetNumber();
  GetSeparator();
  values.hours = GetNumber();
  GetSeparator();
  values.minutes = GetNumber();
  GetSeparator();
  values.seconds = GetNumber();
  if (GetPoint()) GetMilliAndMicroSeconds(values.milliseconds, values.microseconds);
}

bool MET_SCANNER::Scan(const char* input) {
  try {
    Parse(input);
    return true;
  } catch (const char* fault) {
    GlobalLog.printf_line(EXCEPTION, "MET_SCANNER: %s", fault);
    return false;
  }
}

}  // namespace varnoth
