#include "pool/entry_reader.hpp"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "foundation/scan_number.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth {

namespace {

bool IsLineEnd(char byte) { return byte == '\n' || byte == '\r'; }
bool IsBlank(char byte) { return byte == ' ' || byte == '\t'; }
bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

/// Type words in the messages on a block's opening: for a missing token and for a wrong one.
struct OPENING_WORDS {
  const char* missing;
  const char* wrong;
};

/// The readers of floating POINT pairs use words of their own; users search for these messages.
template <class X>
OPENING_WORDS VectorWords() {
  if constexpr (std::is_same_v<X, POINT<float>>) {
    return {"INT_FLT_6_FLT_6_V", "INT_FLT_6_FLT_6_V"};
  } else if constexpr (std::is_same_v<X, POINT<double>>) {
    return {"INT_FLT_15_FLT_15_V", "INT_FLT_15_FLT__V"};
  } else {
    return {TypeRow(POOL_TYPE<ARRAY<X>>).name, TypeRow(POOL_TYPE<ARRAY<X>>).name};
  }
}

/// The reader of text matrices uses its own word too.
template <class X>
OPENING_WORDS MatrixWords() {
  if constexpr (std::is_same_v<X, STRING>) {
    return {"STR_15_M", "STR_15_M"};
  } else {
    return {TypeRow(POOL_TYPE<MATRIX<X>>).name, TypeRow(POOL_TYPE<MATRIX<X>>).name};
  }
}

/// The number at the start of a token: 0 if there is none, the nearest representable one if it is
/// out of range.
long long ScanInteger(const char* token) { return std::strtoll(token, nullptr, 10); }

/// Passes over blanks, of which the lines of blocks have many, but leaves some of them.
const char* PassIndent(const char* start, const char* end) {
  constexpr char BLANKS[] = "        ";
  constexpr int WIDTH = sizeof BLANKS - 1;
  while (end - start >= WIDTH && std::memcmp(start, BLANKS, WIDTH) == 0) start += WIDTH;
  return start;
}

/// The number at the start of a token, in any form that scanf reads. A token that starts with no
/// number gives 0; users of the format rely on this for missing values.
double ScanFloating(const char* token, std::size_t length) {
  double number = 0.0;
  // Nearly all tokens are plain decimal numbers; reading them without scanf is faster.
  const char* const end = token + length;
  if ((IsDigit(*token) || *token == '-') && IsDigit(end[-1])) {
    const auto [stop, error] = ScanNumber(token, end, number);
    if (stop == end && error == std::errc()) return number;
    number = 0.0;
  }
  const HELD_TRAPS held;
  std::sscanf(token, "%lf", &number);  // NOLINT(cert-err34-c)
  return number;
}

bool OverflowedInteger(const char* token) {
  errno = 0;
  ScanInteger(token);
  return errno == ERANGE;
}

}  // namespace

void ENTRY_READER::Rewind() {
  stream.Rewind();
  line = {};
  position = 0;
}

bool ENTRY_READER::NextLine() {
  position = 0;
  line = stream.NextLine();
  return !line.empty();
}

bool ENTRY_READER::IsKeyLine() const {
  if (line.empty()) return false;
  const char first = line[0];
  return !IsBlank(first) && !IsLineEnd(first) && first != '#';
}

bool ENTRY_READER::FindKey(const char* key) {
  Rewind();
  const std::string_view wanted = key;
  for (stream.SkipLines(*key); NextLine(); stream.SkipLines(*key)) {
    if (line.starts_with(wanted) && IsKeyLine() && ReadKey() == wanted) return true;
  }
  return false;
}

const char* ENTRY_READER::ReadKey() {
  const std::size_t limit = std::min<std::size_t>(line.size(), KEY_LIMIT);
  std::size_t length = 0;
  while (length < limit && !IsBlank(line[length]) && !IsLineEnd(line[length])) ++length;
  std::memcpy(current_key, line.data(), length);
  current_key[length] = '\0';
  return current_key;
}

bool ENTRY_READER::NextToken() {
  const char* const end = line.data() + line.size();
  const char* start = PassIndent(line.data() + position, end);
  while (start < end && (IsBlank(*start) || *start == '\r')) ++start;
  token_start = static_cast<std::size_t>(start - line.data());
  if (token_start >= LINE_LIMIT) {
    position = token_start;
    token[0] = '\0';
    return false;
  }
  // A line end is a token of its own, so the first byte belongs to the token whatever it is.
  const char* const stop = std::find_if(std::min(start + 1, end), end,
                                        [](char byte) { return IsBlank(byte) || IsLineEnd(byte); });
  token_length = static_cast<std::size_t>(stop - start);
  position = token_start + token_length;
  std::memcpy(token, start, token_length);
  token[token_length] = '\0';
  return true;
}

void ENTRY_READER::Parse(bool& value) {
  const std::string_view word = token;
  if (word != "TRUE" && word != "FALSE") {
    Fail<INVALID_PARAMETER_VALUE>(" << read value is : ", token,
                                  " but TRUE or FALSE are expected\n");
  }
  value = word == "TRUE";
}

template <class T>
void ENTRY_READER::ParseInteger(T& value) {
  constexpr bool IS_BYTE = std::is_same_v<T, unsigned char>;
  const TYPE_ROW& row = TypeRow(POOL_ELEMENT<T>::SCALAR);
  const std::string_view word = token;
  const auto refuse = [&](const char* type, const char* reason) {
    Fail<INVALID_PARAMETER_VALUE>(" << read value is : ", token, " ", type, reason);
  };
  if (word.find('.') != word.npos && word.find('E') != word.npos) {
    refuse(row.floating_word, " (no floating) value expected\n");
  }
  if (IS_BYTE && word.find('-') != word.npos) refuse(row.name, " (unsigned) value expected\n");
  if (word.find_first_not_of("0123456789+-") != word.npos) {
    refuse(row.character_word, " (no additional character) value expected\n");
  }
  const long long number = ScanInteger(token);
  if (number < std::numeric_limits<T>::min() || number > std::numeric_limits<T>::max() ||
      OverflowedInteger(token)) {
    Fail<PARAMETER_OUT_OF_BOUNDS>(" << read value is : ", token, " (value is out of range) ",
                                  row.name, " expected\n");
  }
  value = static_cast<T>(number);
}

void ENTRY_READER::Parse(unsigned char& value) { ParseInteger(value); }
void ENTRY_READER::Parse(char& value) { ParseInteger(value); }
void ENTRY_READER::Parse(short& value) { ParseInteger(value); }
void ENTRY_READER::Parse(int& value) { ParseInteger(value); }
void ENTRY_READER::Parse(long long& value) { ParseInteger(value); }

template <class T>
void ENTRY_READER::ParseFloating(T& value) {
  constexpr double LIMIT = std::numeric_limits<T>::max();
  const double number = ScanFloating(token, token_length);
  // The comparisons are quiet: a NaN passes and must not trap.
  if (std::isgreater(number, LIMIT) || std::isless(number, -LIMIT)) {
    Fail<PARAMETER_OUT_OF_BOUNDS>(" << read value is : ", token, " (value is out of range) ",
                                  TypeRow(POOL_ELEMENT<T>::SCALAR).name, " expected\n");
  }
  value = static_cast<T>(number);
}

template <class T>
bool ENTRY_READER::ParsePlainLine(T& value) const {
  const char* const end = line.data() + line.size();
  const char* start = PassIndent(line.data(), end);
  while (start != end && IsBlank(*start)) ++start;
  double number = 0.0;
  const auto [stop, error] = ScanNumber(start, end, number);
  if (error != std::errc() || stop == end || !(IsBlank(*stop) || IsLineEnd(*stop))) return false;
  // The comparison is quiet: a NaN must not trap.
  if (!std::islessequal(std::fabs(number), std::numeric_limits<T>::max())) return false;
  value = static_cast<T>(number);
  return true;
}

void ENTRY_READER::Parse(float& value) { ParseFloating(value); }
void ENTRY_READER::Parse(double& value) { ParseFloating(value); }

void ENTRY_READER::Parse(STRING& value) {
  const char* const start = line.data() + token_start;
  const char* const end = line.data() + line.size();
  if (start == end || *start != '"') {
    // The rest of the line, up to the first LF or null byte, else up to the first CR.
    const char* last = std::find_if(start, end, [](char c) { return c == '\n' || c == '\0'; });
    if (last == end) last = std::find(start, end, '\r');
    value = STRING(start, static_cast<std::size_t>(last - start));
    position = static_cast<std::size_t>(last - line.data());
    return;
  }
  char text[LINE_LIMIT + 1];
  std::size_t length = 0;
  const char* byte = start + 1;
  for (; byte < end && !IsLineEnd(*byte) && *byte != '\0'; ++byte) {
    if (*byte == '"' && byte[-1] != '\\') {
      ++byte;
      break;
    }
    if (*byte != '\\') text[length++] = *byte;
  }
  value = STRING(text, length);
  position = static_cast<std::size_t>(byte - line.data());
}

template <class T>
void ENTRY_READER::Parse(COMPLEX<T>& value) {
  Parse(value.re);
  // Both precisions say CPL_6 here.
  NeedToken<INVALID_PARAMETER_VALUE>(" << no imaginary part in CPL_6\n");
  Parse(value.im);
}

template <class T>
void ENTRY_READER::ParseSecond(T& first, T& second) {
  Parse(first);
  NeedToken<ERROR_PARAMETER_POOL>(" << no second coordinate\n");
  Parse(second);
}

template <class T>
void ENTRY_READER::Parse(POINT<T>& value) {
  ParseSecond(value.x, value.y);
}

template <class T>
void ENTRY_READER::Parse(RANGE<T>& value) {
  ParseSecond(value.first, value.second);
}

template <class T>
void ENTRY_READER::Parse(INDEX<int, T>& value) {
  Parse(value.first);
  NeedToken<ERROR_PARAMETER_POOL>(" << no value\n");
  Parse(value.second);
}

void ENTRY_READER::Parse(TUPLE<STRING>& value) {
  Parse(value.first);
  NeedToken<INVALID_PARAMETER_VALUE>(" << no correct string tuple format (missing >>\"<< ?)\n");
  Parse(value.second);
}

RANGE<int> ENTRY_READER::ParseRange() {
  RANGE<int> range;
  Parse(range.first);
  NeedToken<INVALID_PARAMETER_VALUE>(" << no correct range for VECTOR or MATRIX\n");
  Parse(range.second);
  return range;
}

void ENTRY_READER::OpenBlock(const char* missing_word, const char* wrong_word) {
  if (!NextLine()) Fail<ERROR_PARAMETER_POOL>(" << no { due to end of file\n");
  if (!NextToken()) Fail<ERROR_PARAMETER_POOL>(" << { expected for ", missing_word, "\n");
  if (std::strcmp(token, "{") != 0) {
    Fail<ERROR_PARAMETER_POOL>(" << { expected instead of ", token, " for ", wrong_word, "\n");
  }
}

void ENTRY_READER::CloseBlock(CLOSER closer, const char* type_name) {
  if (!NextLine()) Fail<ERROR_PARAMETER_POOL>(" << no } due to end of file\n");
  if (!NextToken()) Fail<ERROR_PARAMETER_POOL>(" << no } at end of ", type_name, "\n");
  if (closer == CLOSER::ANY || std::strcmp(token, "}") == 0) return;
  if (closer == CLOSER::LENGTH) {
    Fail<ERROR_PARAMETER_POOL>(" << ", type_name, " length does not match entry count\n");
  }
  Fail<ERROR_PARAMETER_POOL>(" << } expected instead of ", token, " for ", type_name, "\n");
}

template <class X>
void ENTRY_READER::ParseBlock(X* elements, const RANGE<int>& range) {
  const TYPE_ROW& row = TypeRow(POOL_TYPE<ARRAY<X>>);
  const OPENING_WORDS words = VectorWords<X>();
  OpenBlock(words.missing, words.wrong);
  for (int i = 0; i < range.Count(); ++i) {
    const long long index = static_cast<long long>(range.First()) + i;
    if (!NextLine()) {
      Fail<ERROR_PARAMETER_POOL>(" << no value for index ", index, " due to end of file\n");
    }
    if constexpr (std::is_floating_point_v<X>) {
      if (ParsePlainLine(elements[i])) continue;
    }
    if (!NextToken()) Fail<ERROR_PARAMETER_POOL>(" << no value for index ", index, "\n");
    Parse(elements[i]);
  }
  CloseBlock(row.closer, row.name);
}

bool ENTRY_READER::CanHold(long long count) const {
  constexpr long long ALWAYS = 65536;
  return count <= ALWAYS || count <= stream.Size();
}

template <class X>
void ENTRY_READER::Parse(ARRAY<X>& value) {
  const RANGE<int> range = ParseRange();
  if (!CanHold(range.Count()) || value.Resize(range) != ARRAY_OK) {
    Fail<ERROR_NO_MEMORY>(" << not enough memory to create ARRAY\n");
  }
  // A view accepts any range, even without memory behind it.
  if (range.Count() > 0 && value.begin() == nullptr) {
    Fail<ERROR_NO_MEMORY>(" << not enough memory\n");
  }
  ParseBlock(value.begin(), range);
}

template <class X>
void ENTRY_READER::Parse(MATRIX<X>& value) {
  const RANGE<int> rows = ParseRange();
  NeedToken<INVALID_PARAMETER_VALUE>(" << no correct range for MATRIX\n");
  const RANGE<int> columns = ParseRange();
  const bool fits = rows == value.GetRowRange() && columns == value.GetColumnRange();
  const bool can_hold = CanHold(static_cast<long long>(rows.Count()) * columns.Count());
  if (!can_hold || (!fits && !value.Create(rows, columns))) {
    Fail<ERROR_NO_MEMORY>(std::is_same_v<X, STRING> ? " << not enough memory to create MATRIX\n"
                                                    : " << not enough memory to create ARRAY\n");
  }
  const OPENING_WORDS words = MatrixWords<X>();
  OpenBlock(words.missing, words.wrong);
  for (int r = 0; r < rows.Count(); ++r) {
    ParseBlock(value.GetBlock() + static_cast<std::ptrdiff_t>(r) * columns.Count(), columns);
  }
  CloseBlock(CLOSER::BRACE, TypeRow(POOL_TYPE<MATRIX<X>>).name);
}

#define VARNOTH_INSTANTIATE(...) template void ENTRY_READER::Parse(ARRAY<__VA_ARGS__>&);
VARNOTH_POOL_ELEMENTS(VARNOTH_INSTANTIATE)
#undef VARNOTH_INSTANTIATE
#define VARNOTH_INSTANTIATE(...) template void ENTRY_READER::Parse(MATRIX<__VA_ARGS__>&);
VARNOTH_POOL_MATRIX_ELEMENTS(VARNOTH_INSTANTIATE)
#undef VARNOTH_INSTANTIATE

template void ENTRY_READER::Parse(COMPLEX<float>&);
template void ENTRY_READER::Parse(COMPLEX<double>&);
template void ENTRY_READER::Parse(POINT<int>&);
template void ENTRY_READER::Parse(POINT<long long>&);
template void ENTRY_READER::Parse(POINT<float>&);
template void ENTRY_READER::Parse(POINT<double>&);
template void ENTRY_READER::Parse(RANGE<int>&);
template void ENTRY_READER::Parse(RANGE<float>&);
template void ENTRY_READER::Parse(RANGE<double>&);
template void ENTRY_READER::Parse(INDEX<int, int>&);
template void ENTRY_READER::Parse(INDEX<int, float>&);
template void ENTRY_READER::Parse(INDEX<int, double>&);

}  // namespace varnoth
