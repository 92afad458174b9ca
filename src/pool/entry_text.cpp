#include "pool/entry_text.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "pool/entry_reader.hpp"
#include "text/number_text.hpp"

namespace varnoth {

namespace {

constexpr std::size_t KEY_WIDTH = 32;
constexpr std::size_t TYPE_WIDTH = 16;
constexpr int MAXIMUM_INDENT = 1023;
/// More than most entries have that hold one value.
constexpr std::size_t USUAL_SIZE = 160;

/// Digits after the point. Numbers that stand alone have more than parts of a complex number, a
/// pair or an indexed value. Users compare files by text, so both stay as they are.
struct DIGITS {
  int of_float;
  int of_double;
};
constexpr DIGITS ALONE{10, 17};
constexpr DIGITS AS_PART{6, 15};

/// Appends a number as printf's "%.*E" shows it.
void AppendScientific(std::string& text, double value, int digits) {
  char number[64];
  char* const end = ScientificText(number, std::end(number), value, digits).ptr;
  const auto capital = [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; };
  std::transform(number, end, number, capital);
  text.append(number, end);
}

template <class T>
void AppendInteger(std::string& text, T value) {
  char number[24];
  text.append(number, std::to_chars(number, std::end(number), value).ptr);
}

void AppendTo(std::string& text, bool value, DIGITS) { text += value ? "TRUE" : "FALSE"; }
void AppendTo(std::string& text, unsigned char value, DIGITS) { AppendInteger(text, int{value}); }
void AppendTo(std::string& text, char value, DIGITS) { AppendInteger(text, int{value}); }
void AppendTo(std::string& text, short value, DIGITS) { AppendInteger(text, value); }
void AppendTo(std::string& text, int value, DIGITS) { AppendInteger(text, value); }
void AppendTo(std::string& text, long long value, DIGITS) { AppendInteger(text, value); }
void AppendTo(std::string& text, float value, DIGITS digits) {
  AppendScientific(text, static_cast<double>(value), digits.of_float);
}
void AppendTo(std::string& text, double value, DIGITS digits) {
  AppendScientific(text, value, digits.of_double);
}
void AppendTo(std::string& text, const STRING& value, DIGITS) {
  text += '"';
  for (const char* byte = value.c_str(); *byte != '\0'; ++byte) {
    if (*byte == '"') text += '\\';
    text += *byte;
  }
  text += '"';
}

template <class A, class B>
void AppendParts(std::string& text, const A& first, const char* separator, const B& second) {
  AppendTo(text, first, AS_PART);
  text += separator;
  AppendTo(text, second, AS_PART);
}
template <class T>
void AppendTo(std::string& text, const COMPLEX<T>& value, DIGITS) {
  AppendParts(text, value.re, "\t", value.im);
}
template <class T>
void AppendTo(std::string& text, const POINT<T>& value, DIGITS) {
  AppendParts(text, value.x, "\t", value.y);
}
template <class A, class B>
void AppendTo(std::string& text, const INDEX<A, B>& value, DIGITS) {
  AppendParts(text, value.first, "\t", value.second);
}
void AppendTo(std::string& text, const TUPLE<STRING>& value, DIGITS) {
  AppendParts(text, value.first, " ", value.second);
}

}  // namespace

ENTRY_TEXT::ENTRY_TEXT(const char* key, TYPE_CODE type, const ARRAY<STRING>& comments) {
  text.reserve(USUAL_SIZE);
  for (const STRING& comment : comments) {
    text += '#';
    text += comment.c_str();
    text += '\n';
  }
  const std::size_t line_start = text.size();
  text += key;
  text.resize(std::max(text.size(), line_start + KEY_WIDTH), ' ');
  text += ' ';
  const std::size_t type_start = text.size();
  text += TypeRow(type).name;
  text.resize(std::max(text.size(), type_start + TYPE_WIDTH), ' ');
  indent = std::clamp(static_cast<int>(text.size() - line_start) - 2, 0, MAXIMUM_INDENT);
}

template <class X>
void ENTRY_TEXT::AppendElement(const X& value) {
  AppendTo(text, value, ALONE);
}

void ENTRY_TEXT::AppendRange(const RANGE<int>& range) {
  AppendInteger(text, range.First());
  text += '\t';
  AppendInteger(text, range.Count());
}

void ENTRY_TEXT::OpenBrace(int block_indent) {
  text += '\n';
  text.append(static_cast<std::size_t>(block_indent), ' ');
  text += '{';
}

void ENTRY_TEXT::CloseBrace(int block_indent) {
  text.append(static_cast<std::size_t>(block_indent), ' ');
  text += '}';
}

template <class X>
void ENTRY_TEXT::AppendBlock(const X* elements, int count, int block_indent) {
  const int element_indent = std::min(block_indent + 2, MAXIMUM_INDENT);
  OpenBrace(block_indent);
  text += '\n';
  if constexpr (std::is_floating_point_v<X>) {
    constexpr int LONGEST_NUMBER = 26;  // with its line end
    constexpr int ENTRY_END = 3;
    text.reserve(text.size() + static_cast<std::size_t>(count) * (element_indent + LONGEST_NUMBER) +
                 static_cast<std::size_t>(block_indent + ENTRY_END));
  }
  for (int i = 0; i < count; ++i) {
    text.append(static_cast<std::size_t>(element_indent), ' ');
    AppendElement(elements[i]);
    text += '\n';
  }
  CloseBrace(block_indent);
}

template <class X>
void ENTRY_TEXT::Append(const ARRAY<X>& value) {
  AppendRange(value.GetRange());
  AppendBlock(value.begin(), value.GetLength(), indent);
  text += "\n\n";
}

template <class X>
void ENTRY_TEXT::Append(const MATRIX<X>& value) {
  const RANGE<int>& rows = value.GetRowRange();
  const RANGE<int>& columns = value.GetColumnRange();
  AppendRange(rows);
  text += '\t';
  AppendRange(columns);
  OpenBrace(indent);
  for (int r = 0; r < rows.Count(); ++r) {
    AppendBlock(value.GetBlock() + static_cast<std::ptrdiff_t>(r) * columns.Count(),
                columns.Count(), std::min(indent + 2, MAXIMUM_INDENT));
  }
  text += '\n';
  CloseBrace(indent);
  text += "\n\n";
}

bool ENTRY_TEXT::FitsReader() const {
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find('\n', start) + 1;
    if (end - start > ENTRY_READER::LINE_LIMIT) return false;
    start = end;
  }
  return true;
}

#define VARNOTH_INSTANTIATE(...)                               \
  template void ENTRY_TEXT::AppendElement(const __VA_ARGS__&); \
  template void ENTRY_TEXT::Append(const ARRAY<__VA_ARGS__>&);
VARNOTH_POOL_ELEMENTS(VARNOTH_INSTANTIATE)
#undef VARNOTH_INSTANTIATE
#define VARNOTH_INSTANTIATE(...) template void ENTRY_TEXT::Append(const MATRIX<__VA_ARGS__>&);
VARNOTH_POOL_MATRIX_ELEMENTS(VARNOTH_INSTANTIATE)
#undef VARNOTH_INSTANTIATE

}  // namespace varnoth
