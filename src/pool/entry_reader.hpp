#pragma once

#include "foundation/errors.hpp"
#include "foundation/string.hpp"
#include "log/log.hpp"
#include "pool/pool_stream.hpp"
#include "pool/value_traits.hpp"

namespace varnoth {

/// Reads the lines, tokens and values of a pool's text, and reports what is wrong with them.
///
/// The grammar has oddities that files in use lean on: a line is at most 1024 bytes, LF and CR each
/// end one, and the end of the file stands in the last line as the byte 0xFF.
class ENTRY_READER {
 public:
  static constexpr int LINE_LIMIT = POOL_STREAM::LINE_LIMIT;
  static constexpr int KEY_LIMIT = 100;

  explicit ENTRY_READER(POOL_STREAM& file) : stream(file) {}

  /// Back to the file's first byte.
  void Rewind();
  /// Takes the next line, its terminator included. False if not a byte was left.
  bool NextLine();
  /// Goes to the first entry of a key, from the file's first byte on; false if there is none.
  bool FindKey(const char* key);
  /// Whether the current line's first byte makes it a key line.
  bool IsKeyLine() const;
  bool IsCommentLine() const { return line.starts_with('#'); }
  /// The current line's bytes.
  std::string_view Line() const { return line; }
  /// Takes the current line's first word, at most 100 bytes of it, as the current key.
  const char* ReadKey();

  /// Takes the next word of the line as the token; false only beyond the line limit. Where nothing
  /// is left the token is the line end (LF) or empty.
  bool NextToken();
  const char* Token() const { return token; }
  /// Back to the line's first byte.
  void RewindLine() { position = 0; }

  /// Parses a value from the current token on; throws a class of ERROR_PARAMETER_POOL behind a line
  /// at ALARM. A float or double takes what is no number as 0.
  void Parse(bool& value);
  void Parse(unsigned char& value);
  void Parse(char& value);
  void Parse(short& value);
  void Parse(int& value);
  void Parse(long long& value);
  void Parse(float& value);
  void Parse(double& value);
  void Parse(STRING& value);
  template <class T>
  void Parse(COMPLEX<T>& value);
  template <class T>
  void Parse(POINT<T>& value);
  template <class T>
  void Parse(RANGE<T>& value);
  template <class T>
  void Parse(INDEX<int, T>& value);
  void Parse(TUPLE<STRING>& value);
  /// A vector: range and block. The array takes on the file's range.
  template <class X>
  void Parse(ARRAY<X>& value);
  /// A matrix: two ranges and a block of vector blocks.
  template <class X>
  void Parse(MATRIX<X>& value);

  /// Logs the pieces behind the words "parameter pool: parameter key >> " and the current key at
  /// ALARM and throws an ERROR.
  template <class ERROR, class... PIECES>
  [[noreturn]] void Fail(const PIECES&... pieces) const {
    GlobalLog.set(ALARM) << "parameter pool: parameter key >> " << current_key;
    (void)(GlobalLog << ... << pieces);
    throw ERROR();
  }

 private:
  template <class ERROR>
  void NeedToken(const char* text) {
    if (!NextToken()) Fail<ERROR>(text);
  }
  template <class T>
  void ParseInteger(T& value);
  template <class T>
  void ParseFloating(T& value);
  template <class T>
  void ParseSecond(T& first, T& second);
  RANGE<int> ParseRange();
  /// Whether the file can hold that many elements, each of which takes a byte or more: no count of
  /// a broken pool takes memory that its content does not need.
  bool CanHold(long long count) const;
  /// The line that opens a block; the words name the type where the opening is wrong.
  void OpenBlock(const char* missing_word, const char* wrong_word);
  void CloseBlock(CLOSER closer, const char* type_name);
  template <class X>
  void ParseBlock(X* elements, const RANGE<int>& range);

  POOL_STREAM& stream;
  std::string_view line;  ///< in the stream's block
  char token[LINE_LIMIT + 1] = {};
  std::size_t token_start = 0;
  std::size_t token_length = 0;
  std::size_t position = 0;
  char current_key[KEY_LIMIT + 1] = {};
};

}  // namespace varnoth
