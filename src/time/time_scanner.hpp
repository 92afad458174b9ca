#pragma once

namespace varnoth {

/// Kinds of token; the names are those that messages show.
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

/// The name of a kind of token; throws a text if it is none.
const char* TokenName(int type);

struct TIME_TOKEN {
  int type = token_white;
  int value = 0;  ///< of a number (at most 2^31 - 1, also for longer ones), month (1 to 12) or sign
  char text[128] = {};
  int length = 0;
};

/// Tokenizer of time texts with one token of push-back, and the primitives that the grammars of the
/// time kinds are made of. What does not fit the grammar throws a text ("TIME: scanner: unexpected
/// end of string", "unexpected token in GetNumber()", …); letters that name no month throw
/// ERROR_ARGUMENT, and a token of more than 127 characters ERROR_DATA, both with a log line.
class TIME_SCANNER {
 public:
  /// Scans a text into the fields of the derived class; true on success.
  virtual bool Scan(const char* input) = 0;

  /// The next token, or false at the end of the text or of its line.
  bool GetToken(TIME_TOKEN& token);
  /// Pushes one token back.
  void Unget(const TIME_TOKEN& token);

  /// The primitives skip white space in front of what they read.
  int GetNumber();
  /// A separator or a minus sign.
  void GetSeparator();
  /// '+' or '-'. Without a sign, and for any sign behind white space, '+'.
  char GetSign();
  /// Whether a fraction may follow: true at a point and at a "Z" that ends the text, false at the
  /// end.
  bool GetPoint();
  /// A fraction's digits as milliseconds and microseconds; further digits are ignored. Both are 0
  /// at the end of the text and stay as they are at a "Z".
  void GetMilliAndMicroSeconds(int& ms, int& us);

 protected:
  TIME_SCANNER() = default;
  TIME_SCANNER(const TIME_SCANNER&) = default;
  TIME_SCANNER& operator=(const TIME_SCANNER&) = default;
  ~TIME_SCANNER() = default;

  void Start(const char* input, int first = 0);
  /// The next token other than white space, or false at the end.
  bool GetTokenBehindWhite(TIME_TOKEN& token);
  /// The same two, where a token must follow.
  void NeedToken(TIME_TOKEN& token);
  void NeedTokenBehindWhite(TIME_TOKEN& token);
  /// Logs what kind of token was found and throws the text.
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
