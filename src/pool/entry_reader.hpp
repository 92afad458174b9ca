#pragma once

#include "foundation/errors.hpp"
#include "foundation/string.hpp"
#include "log/log.hpp"
#include "pool/pool_stream.hpp"
#include "pool/value_traits.hpp"

namespace varnoth {

/// Reads the lines, tokens and values of a pool's text, and reports what is wrong with them.
///
///     ENTRY_READER reader(stream);  // an open POOL_STREAM
///     double height = 0.0;
///     if (reader.FindKey("local_height")) {
///       for (int word = 0; word < 3 && reader.NextToken();) ++word;  // key, type, value
///       reader.Parse(height);
///     }
///
/// Existing files rely on oddities of the grammar: a line has at most 1024 bytes, LF and CR each
/// end a line, and the byte 0xFF at the end of the last line marks the end of the file.
class ENTRY_READER {
 public:
  static constexpr int LINE_LIMIT = POOL_STREAM::LINE_LIMIT;
  static constexpr int KEY_LIMIT = 100;

  explicit ENTRY_READER(POOL_STREAM& file) : stream(file) {}

  /// Goes back to the file's first byte.
  void Rewind();
  /// Takes the next line with its terminator. False after the line that has the end mark.
  bool NextLine();
  /// Goes to the first entry of a key, searching from the file's first byte; false if there is
  /// none. The current line is then the key line, and its first word is still to be read.
  bool FindKey(const char* key);
  /// Whether the current line starts an entry: its first byte is no blank, tab, line end or "#".
  bool IsKeyLine() const;
  bool IsCommentLine() const { return line.starts_with('#'); }
  /// The current line's bytes.
  std::string_view Line() const { return line; }
  /// Makes the current line's first word, at most 100 bytes of it, the current key, and gives it.
  const char* ReadKey();

  /// Makes the next word of the line the token; false only if blanks reach up to the line limit.
  /// If no word is left, the token is the line end (LF) or empty.
  bool NextToken();
  const char* Token() const { return token; }
  /// Goes back to the line's first byte.
  void RewindLine() { position = 0; }

  /// Parses a value that starts at the current token. Throws, after a line at ALARM, a class of
  /// the ERROR_PARAMETER_POOL family. An integer refuses a token with anything but decimal digits
  /// and signs; a float or double reads a token that is no number as 0.
  void Parse(bool& value);
  void Parse(unsigned char& value);
  void Parse(char& value);
  void Parse(short& value);
  void Parse(int& value);
  void Parse(long long& value);
  void Parse(float& value);
  void Parse(double& value);
  /// A quoted text up to its closing quote or the line end, without its backslashes; an unquoted
  /// one is the rest of the line.
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
  /// A vector: a range (first index and count) and a block. The array takes the file's range. Also
  /// throws ERROR_NO_MEMORY, for a negative count too.
  template <class X>
  void Parse(ARRAY<X>& value);
  /// A matrix: the ranges of rows and columns and a block of vector blocks. Throws like a vector.
  template <class X>
  void Parse(MATRIX<X>& value);

  /// Logs "parameter pool: parameter key >> ", the current key and the pieces at ALARM, and throws
  /// an ERROR.
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
  /// Reads a line that has a plain decimal number and at most blanks ahead of it, as most lines of
  /// blocks, without making the number the token; false for any other line.
  template <class T>
  bool ParsePlainLine(T& value) const;
  template <class T>
  void ParseSecond(T& first, T& second);
  RANGE<int> ParseRange();
  /// Whether the file can hold that many elements, at one byte or more each. Counts up to 65536
  /// always pass, so that a wrong count in a broken pool takes little memory.
  bool CanHold(long long count) const;
  /// Takes the line that opens a block; the words name the type if the opening is missing or wrong.
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
