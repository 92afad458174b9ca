#include "time/time_scanner.hpp"

#include <charconv>
#include <climits>
#include <cstring>
#include <iterator>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "time/calendar.hpp"
#include "time/digit_field.hpp"

namespace varnoth {

namespace {

constexpr const char* TOKEN_NAMES[] = {
    "token_sign_minus", "token_sign_plus", "token_white", "token_number",
    "token_point",      "token_separator", "token_month", "token_zulu",
};
constexpr const char* WHITE = " \t";
constexpr const char* DIGITS = "0123456789";
constexpr const char* MONTH_LETTERS = "ABCDEFGJLMNOPRSTUVY";

}  // namespace

const char* TokenName(int type) {
  if (type < 0 || type >= std::ssize(TOKEN_NAMES)) {
    throw "can not convert unregistered tokentype to string";
  }
  return TOKEN_NAMES[type];
}

void TIME_SCANNER::Start(const char* input, int first) {
  text = input;
  position = first;
  unget_full = false;
}

int TIME_SCANNER::RunLength(const char* characters) const {
  return static_cast<int>(std::strspn(text + position, characters));
}

void TIME_SCANNER::Consume(TIME_TOKEN& token, int type, int length, int value) {
  if (length >= std::ssize(token.text)) {
    GlobalLog.set(ALARM) << "TIME_SCANNER: token of " << length << " characters is too long\n";
    throw ERROR_DATA();
  }
  token.type = type;
  token.value = value;
  token.length = length;
  std::memcpy(token.text, text + position, static_cast<std::size_t>(length));
  token.text[length] = '\0';
  position += length;
}

bool TIME_SCANNER::GetToken(TIME_TOKEN& token) {
  if (unget_full) {
    token = unget;
    unget_full = false;
    return true;
  }
  switch (text[position]) {
    case '\0':
    case '\n':
      return false;
    case '\t':
    case ' ':
      Consume(token, token_white, RunLength(WHITE));
      break;
    case '+':
      Consume(token, token_sign_plus, 1, 1);
      break;
    case '-':
      Consume(token, token_sign_minus, 1, -1);
      break;
    case '.':
      Consume(token, token_point, 1);
      break;
    case '/':
    case ':':
    case 'T':
    case '\\':
      Consume(token, token_separator, 1);
      break;
    case '0':
    case '1':
    case '2':
    case '3':
    case '4':
    case '5':
    case '6':
    case '7':
    case '8':
    case '9':
      // A number out of range leaves INT_MAX in place, which passes no range check.
      Consume(token, token_number, RunLength(DIGITS), INT_MAX);
      std::from_chars(token.text, token.text + token.length, token.value);
      break;
    case 'A':
    case 'D':
    case 'F':
    case 'J':
    case 'M':
    case 'N':
    case 'O':
    case 'S':
      Consume(token, token_month, RunLength(MONTH_LETTERS));
      token.value = MonthFromName(token.text);
      break;
    case 'Z':
      Consume(token, token_zulu, 1);
      break;
    default:
      throw "TIME: scanner: unhandled character";
  }
  return true;
}

void TIME_SCANNER::Unget(const TIME_TOKEN& token) {
  if (unget_full) throw "TIME: scanner: internal error unget buffer overflow";
  unget = token;
  unget_full = true;
}

bool TIME_SCANNER::GetTokenBehindWhite(TIME_TOKEN& token) {
  while (GetToken(token)) {
    if (token.type != token_white) return true;
  }
  return false;
}

void TIME_SCANNER::NeedToken(TIME_TOKEN& token) {
  if (!GetToken(token)) throw "TIME: scanner: unexpected end of string";
}

void TIME_SCANNER::NeedTokenBehindWhite(TIME_TOKEN& token) {
  do {
    NeedToken(token);
  } while (token.type == token_white);
}

void TIME_SCANNER::RefuseToken(const TIME_TOKEN& token, const char* fault) {
  GlobalLog.printf_line(EXCEPTION, "found token: %s", TokenName(token.type));
  throw fault;  // NOLINT(misc-throw-by-value-catch-by-reference): texts are thrown as they are
}

int TIME_SCANNER::GetNumber() {
  TIME_TOKEN token;
  NeedTokenBehindWhite(token);
  if (token.type != token_number) RefuseToken(token, "unexpected token in GetNumber()");
  return token.value;
}

void TIME_SCANNER::GetSeparator() {
  TIME_TOKEN token;
  NeedTokenBehindWhite(token);
  if (token.type != token_separator && token.type != token_sign_minus) {
    RefuseToken(token, "unexpected token in GetSeparator()");
  }
}

char TIME_SCANNER::GetSign() {
  TIME_TOKEN token;
  NeedToken(token);
  const bool behind_white = token.type == token_white;
  if (behind_white) NeedTokenBehindWhite(token);
  if (token.type == token_sign_minus) return behind_white ? '+' : '-';
  if (token.type != token_sign_plus) Unget(token);
  return '+';
}

bool TIME_SCANNER::GetPoint() {
  TIME_TOKEN token;
  if (!GetTokenBehindWhite(token)) return false;
  if (token.type == token_zulu) return !GetTokenBehindWhite(token);
  if (token.type != token_point) RefuseToken(token, "unexpected token in GetPoint()");
  return true;
}

void TIME_SCANNER::GetMilliAndMicroSeconds(int& ms, int& us) {
  TIME_TOKEN token;
  if (!GetTokenBehindWhite(token)) {
    ms = us = 0;
    return;
  }
  if (token.type == token_zulu) return;
  if (token.type != token_number) {
    RefuseToken(token, "unexpected token in GetMilliAndMicroSeconds()");
  }
  char digits[] = "000000";
  std::memcpy(digits, token.text, static_cast<std::size_t>(token.length < 6 ? token.length : 6));
  ms = ReadDigits(digits, 3);
  us = ReadDigits(digits + 3, 3);
}

}  // namespace varnoth
