#pragma once

namespace varnoth {

/// Kinds of token; messages show these names.
enum TOKEN_TYPE : int {
  token_sign_minus,
  token_sign_plus,
  token_white,   ///< a run of blanks and tabs
  token_number,  ///< a run of digits
  token_point,
  token_separator,  ///< one of / : T and the backslash
  token_month,      ///< a run of capital letters that names a month
  token_zulu,
};

/// The name of a kind of token. Throws the text "can not convert unregistered tokentype to string"
/// for any other number.
const char* TokenName(int type);

struct TIME_TOKEN {
  int type = token_white;
  int value = 0;  ///< of a number (2^31 - 1 for any larger one), month (1 to 12) or sign (+1, -1)
  char text[128] = {};
  int length = 0;
};

/// Splits time texts into tokens, with a push-back of one, and has the primitives for the grammars
/// of the derived scanners:
///
///     struct HOUR_SCANNER final : TIME_SCANNER {
///       bool Scan(const char* input) override {
///         Start(input);
///         return GetNumber() < 24;
///       }
///     };
///
/// An input that does not fit throws a text ("TIME: scanner: unexpected end of string", "unexpected
/// token in GetNumber()", …), after a line at EXCEPTION that names the kind of the token, if there
/// is a token. Letters that name no month throw ERROR_ARGUMENT after a line at EXCEPTION, and a
/// token of more than 127 characters throws ERROR_DATA after a line at ALARM.
class TIME_SCANNER {
 public:
  /// Scans a text into the fields of the derived class; true on success. The text must outlive the
  /// scan.
  virtual bool Scan(const char* input) = 0;

  /// Gives the next token; false at the end of the text or at a line end (LF).
  bool GetToken(TIME_TOKEN& token);
  /// Pushes one token back. A second one without a `GetToken` in between throws a text.
  void Unget(const TIME_TOKEN& token);

  /// The primitives skip white space in front of what they read.
  int GetNumber();
  /// Skips a separator or a minus sign.
  void GetSeparator();
  /// Returns the sign: '+' or '-', and always '+' after white space or without a sign.
  char GetSign();
  /// Whether a fraction may follow: true after a point and after a "Z" that ends the text, false at
  /// the end of the text and after any other "Z".
  bool GetPoint();
  /// The first six digits of a fraction as milliseconds and microseconds; missing digits count as
  /// 0. Both are 0 at the end of the text and stay as they are at a "Z".
  void GetMilliAndMicroSeconds(int& ms, int& us);

 protected:
  TIME_SCANNER() = default;
  TIME_SCANNER(const TIME_SCANNER&) = default;
  TIME_SCANNER& operator=(const TIME_SCANNER&) = default;
  ~TIME_SCANNER() = default;

  void Start(const char* input, int first = 0);
  /// Gives the next token other than white space; false at the end.
  bool GetTokenBehindWhite(TIME_TOKEN& token);
  /// Like GetToken and GetTokenBehindWhite, but throw a text at the end.
  void NeedToken(TIME_TOKEN& token);
  void NeedTokenBehindWhite(TIME_TOKEN& token);
  /// Logs the kind of the token at EXCEPTION and throws the text.
  [[noreturn]] static void RefuseToken(const TIME_TOKEN& token, const char* fault);

  int position = 0;
  const char* text = "";
  TIME_TOKEN unget;
  bool unget_full = false;

 private:
  void Consume(TIME_TOKEN& token, int type, int length, int value = 0);
  int RunLength(const char* characters) const;
};

}  // namespace varnoth
