#include "time/utc_scanner.hpp"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "time/calendar.hpp"
#include "time/digit_field.hpp"

namespace varnoth {

namespace {

constexpr int BEHIND_DAY_NAME = 4;

/// A form as nearly all pools have it: '0' stands for a digit, 'A' for a letter, and the last eight
/// characters are the clock's. The numbers are the places of the date.
struct PLAIN_FORM {
  std::string_view shape;
  int year;
  int month;
  int day;
};
constexpr PLAIN_FORM PLAIN_FORMS[] = {{"00-AAA-0000/00:00:00", 7, 3, 0},
                                      {"0000-00-00T00:00:00", 0, 5, 8}};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return c >= 'A' && c <= 'Z'; }

bool HasShape(const char* text, std::string_view shape) {
  return std::equal(shape.begin(), shape.end(), text, [](char wanted, char c) {
    return wanted == '0' ? IsDigit(c) : wanted == 'A' ? IsLetter(c) : wanted == c;
  });
}

/// A month of two digits or three letters; 0 for letters that name none.
int PlainMonth(const char* text) {
  if (IsDigit(*text)) return ReadDigits(text, 2);
  int month = 12;
  while (month > 0 && std::memcmp(text, MonthName(month), 3) != 0) --month;
  return month;
}

// Rewrites a text in the notation of one of the forms 1 to 4, which the scanner reads.
std::string Readable(const char* input, int& form) {
  std::string text = input;
  switch (form) {
    case UTC_FORM_COMPACT:
      text.insert(4, "-").insert(7, "-").insert(13, ":").insert(16, ":");
      form = UTC_FORM_ISO;
      break;
    case UTC_FORM_NAMED_BLANK:
      text[11] = '/';
      form = UTC_FORM_NAMED_MONTH;
      break;
    case UTC_FORM_CALENDAR:
      for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      break;
    case UTC_FORM_NAMED_MONTH:
    case UTC_FORM_NUMBERS:
    case UTC_FORM_ISO:
      break;
    default:
      throw "invalid or unsupported format";
  }
  return text;
}

[[noreturn]] void RefuseField(const char* field, int value) {
  GlobalLog.set(EXCEPTION) << "UTC_SCANNER: invalid " << field << ": " << value << "\n";
  throw ERROR_DATA();
}

}  // namespace

bool UTC_SCANNER::Scan(const char* input) {
  if (ScanPlain(input)) {
    text = input;
    return true;
  }
  std::string copy;
  values = UTC_VALUES();
  Start(input);
  try {
    int form = DetectForm(input);
    copy = Readable(input, form);
    Start(copy.c_str(), form == UTC_FORM_CALENDAR ? BEHIND_DAY_NAME : 0);
    ScanForm(form);
    text = input;
    return true;
  } catch (const char* fault) {
    GlobalLog.set(EXCEPTION) << "UTC_SCANNER: " << fault << ": " << input << "\n";
  } catch (...) {
    // The log already has the details.
  }
  GlobalLog.set(EXCEPTION) << "UTC_SCANNER: Error during scan of: " << text << "\n";
  text = input;
  throw ERROR_DATA();
}

bool UTC_SCANNER::ScanPlain(const char* input) {
  const auto* const form =
      std::find_if(std::begin(PLAIN_FORMS), std::end(PLAIN_FORMS),
                   [&](const PLAIN_FORM& plain) { return HasShape(input, plain.shape); });
  if (form == std::end(PLAIN_FORMS)) return false;
  const char* const clock = input + form->shape.size() - std::strlen("00:00:00");
  const char* at = input + form->shape.size();
  char fraction[] = "000000";
  if (*at == '.') {
    const char* const first = ++at;
    while (IsDigit(*at) && at - first < std::ssize(fraction) - 1) ++at;
    if (at == first) return false;
    std::copy(first, at, fraction);
  }
  if (*at == 'Z') ++at;
  if (*at != '\0') return false;
  const UTC_VALUES read = {ReadDigits(input + form->year, 4), PlainMonth(input + form->month),
                           ReadDigits(input + form->day, 2),  ReadDigits(clock, 2),
                           ReadDigits(clock + 3, 2),          ReadDigits(clock + 6, 2),
                           ReadDigits(fraction, 3),           ReadDigits(fraction + 3, 3)};
  if (read.hour > 23 || read.minute > 59 || read.second > 59 ||
      read.day > DaysInMonth(read.month, read.year)) {
    return false;
  }
  values = read;
  return true;
}

int UTC_SCANNER::DetectForm(const char* input) const {
  const std::size_t length = std::strlen(input);
  const auto at = [&](std::size_t index, char c) { return index < length && input[index] == c; };
  if (length == 15 && at(8, 'T')) return UTC_FORM_COMPACT;
  if (at(3, ' ')) return UTC_FORM_CALENDAR;
  if (at(2, '-') && at(6, '-')) {
    if (at(11, '/')) return UTC_FORM_NAMED_MONTH;
    if (at(11, ' ')) return UTC_FORM_NAMED_BLANK;
  }
  if (at(4, '-') && at(7, '-') && at(13, ':') && at(16, ':')) {
    if (at(10, '/')) return UTC_FORM_NUMBERS;
    if (at(10, 'T')) return UTC_FORM_ISO;
  }
  return UTC_FORM_UNKNOWN;
}

int UTC_SCANNER::GetMonth() {
  TIME_TOKEN token;
  NeedTokenBehindWhite(token);
  if (token.type != token_number && token.type != token_month) {
    RefuseToken(token, "unexpected token in GetMonth()");
  }
  return token.value;
}

void UTC_SCANNER::ScanForm(int form) {
  ScanDate(form);
  ScanClock();
  ScanTail(form);
  CheckFields();
}

void UTC_SCANNER::ScanDate(int form) {
  if (form == UTC_FORM_CALENDAR) {
    values.month = GetMonth();
    values.day = GetNumber();
    return;
  }
  const bool day_first = form == UTC_FORM_NAMED_MONTH;
  (day_first ? values.day : values.year) = GetNumber();
  GetSeparator();
  values.month = GetMonth();
  GetSeparator();
  (day_first ? values.year : values.day) = GetNumber();
  GetSeparator();
}

void UTC_SCANNER::ScanClock() {
  values.hour = GetNumber();
  if (values.hour > 23) RefuseField("hour", values.hour);
  GetSeparator();
  values.minute = GetNumber();
  if (values.minute > 59) RefuseField("minute", values.minute);
  GetSeparator();
  values.second = GetNumber();
  if (values.second >= 63) RefuseField("second", values.second);
}

void UTC_SCANNER::ScanTail(int form) {
  if (form == UTC_FORM_CALENDAR) {
    values.year = GetNumber();
  } else if (GetPoint()) {
    GetMilliAndMicroSeconds(values.millisecond, values.microsecond);
  }
}

void UTC_SCANNER::CheckFields() const {
  if (values.second >= 60 && !(values.hour == 23 && values.minute == 59)) {
    RefuseField("leap second", values.second);
  }
  // The month may be any number: outside 1 to 12 DaysInMonth gives -1, and no day passes.
  if (values.day > DaysInMonth(values.month, values.year)) {
    GlobalLog.set(EXCEPTION) << "UTC_SCANNER: Invalid date: " << values.day << "." << values.month
                             << "." << values.year << "\n";
    throw ERROR_DATA();
  }
}

}  // namespace varnoth
