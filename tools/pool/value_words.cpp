#include "tools/pool/value_words.hpp"

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace varnoth {

namespace {

using FINDING = std::optional<WORD_FINDING>;

bool IsBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\r'; }

FINDING Error(const std::string& text) { return WORD_FINDING{SEVERITY::ERROR, text}; }
FINDING Warning(const std::string& text) { return WORD_FINDING{SEVERITY::WARNING, text}; }

std::string Quoted(std::string_view word) { return "'" + std::string(word) + "'"; }

std::string TypeName(TYPE_CODE type) { return TypeRow(type).name; }

struct LIMITS {
  long long lowest;
  long long highest;
};

LIMITS LimitsOf(TYPE_CODE type) {
  switch (type) {
    case BYT:
      return {0, UCHAR_MAX};
    case INT_8:
      return {SCHAR_MIN, SCHAR_MAX};
    case INT_16:
      return {SHRT_MIN, SHRT_MAX};
    case INT_32:
      return {INT_MIN, INT_MAX};
    default:
      return {LLONG_MIN, LLONG_MAX};
  }
}

FINDING CheckInteger(TYPE_CODE type, std::string_view word) {
  if (word.empty()) return Error("no value, " + TypeName(type) + " expected");
  if (word.find_first_not_of("0123456789+-") != word.npos) {
    return Error(Quoted(word) + " is no integer and refused");
  }
  const std::string text(word);
  errno = 0;
  char* end = nullptr;
  const long long number = std::strtoll(text.c_str(), &end, 10);
  const LIMITS limits = LimitsOf(type);
  const bool is_negative_byte = type == BYT && word.find('-') != word.npos;
  if (errno == ERANGE || number < limits.lowest || number > limits.highest || is_negative_byte) {
    return Error(Quoted(word) + " does not fit " + TypeName(type) + " (" +
                 std::to_string(limits.lowest) + " to " + std::to_string(limits.highest) + ")");
  }
  if (*end != '\0') return Error(Quoted(word) + " is read as " + std::to_string(number));
  return {};
}

std::string Short(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", number);
  return text;
}

FINDING CheckFloating(TYPE_CODE type, std::string_view word) {
  if (word.empty()) return Error("no value, it is read as 0");
  const std::string text(word);
  double number = 0.0;
  int length = 0;
  std::sscanf(text.c_str(), "%lf%n", &number, &length);  // NOLINT(cert-err34-c): as the reader does
  if (length == 0) return Error(Quoted(word) + " is no number and read as 0");
  if (static_cast<std::size_t>(length) != text.size()) {
    const char stop = text[static_cast<std::size_t>(length)];
    return Error(Quoted(word) + " is read as " + Short(number) +
                 (stop == 'D' || stop == 'd' ? ": an exponent is written with E" : ""));
  }
  const bool is_hexadecimal = word.find_first_of("xX") != word.npos;
  if (!is_hexadecimal && std::string_view("eE+-").find(word.back()) != std::string_view::npos) {
    return Error(Quoted(word) + " is read as " + Short(number) + ": its exponent is missing");
  }
  if (std::isnan(number)) return Warning(Quoted(word) + " is not a number");
  if (std::fabs(number) > (type == FLT_6 ? static_cast<double>(FLT_MAX) : DBL_MAX)) {
    return Error(Quoted(word) + " does not fit " + TypeName(type));
  }
  const bool is_zero = type == FLT_6 ? static_cast<float>(number) == 0.0F : number == 0.0;
  const std::string_view mantissa = word.substr(0, word.find_first_of("eEpP"));
  if (is_zero && !is_hexadecimal && mantissa.find_first_of("123456789") != word.npos) {
    return Error(Quoted(word) + " is too small for " + TypeName(type) + " and read as 0");
  }
  return {};
}

FINDING CheckText(std::string_view text) {
  if (text.empty()) return Warning("no value, it is read as an empty text");
  if (text[0] != '"') {
    if (!IsBlank(text.back())) return {};
    return Warning("the blanks behind an unquoted text belong to it");
  }
  bool is_closed = false;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"' && text[i - 1] != '\\') is_closed = i + 1 == text.size();
    if (text[i] == '\\' && (i + 1 == text.size() || text[i + 1] != '"')) {
      return Error("the backslash in " + std::string(text) + " is lost");
    }
  }
  if (!is_closed) return Error("the closing quote of " + std::string(text) + " is missing");
  return {};
}

FINDING CheckTruth(std::string_view word) {
  if (word == "TRUE" || word == "FALSE") return {};
  return Error(Quoted(word) + " is neither TRUE nor FALSE");
}

FINDING CheckPart(TYPE_CODE part, LINE_WORDS& words) {
  if (part == STR) return CheckText(words.NextText());
  std::string_view word = words.Next();
  const std::size_t nul = word.find('\0');
  if (nul != word.npos) {
    if (word.find_first_not_of('\0', nul) != word.npos) {
      return Error(Quoted(word.substr(0, nul)) + " is all that is read, up to a NUL byte");
    }
    word = word.substr(0, nul);
  }
  if (part == BOL) return CheckTruth(word);
  if (part == FLT_6 || part == FLT_15) return CheckFloating(part, word);
  return CheckInteger(part, word);
}

}  // namespace

SHAPE ShapeOf(TYPE_CODE code) {
  if (code <= STR_STR) return SHAPE::SCALAR;
  return code <= STR_STR_V ? SHAPE::VECTOR : SHAPE::MATRIX;
}

TYPE_CODE ElementOf(TYPE_CODE code) {
  if (ShapeOf(code) == SHAPE::SCALAR) return code;
  std::string_view name = TypeRow(code).name;
  name.remove_suffix(2);  // "_V" or "_M"
  return TypeFromName(name);
}

std::vector<TYPE_CODE> PartsOf(TYPE_CODE scalar) {
  switch (scalar) {
    case CPL_6:
    case FLT_6_FLT_6:
      return {FLT_6, FLT_6};
    case CPL_15:
    case FLT_15_FLT_15:
      return {FLT_15, FLT_15};
    case INT_32_INT_32:
    case IDX_INT_32:
      return {INT_32, INT_32};
    case INT_64_INT_64:
      return {INT_64, INT_64};
    case IDX_FLT_6:
      return {INT_32, FLT_6};
    case IDX_FLT_15:
      return {INT_32, FLT_15};
    case STR_STR:
      return {STR, STR};
    default:
      return {scalar};
  }
}

void LINE_WORDS::SkipBlanks() {
  while (position < line.size() && IsBlank(line[position])) ++position;
}

std::string_view LINE_WORDS::Next() {
  SkipBlanks();
  const std::size_t start = position;
  while (position < line.size() && !IsBlank(line[position])) ++position;
  return line.substr(start, position - start);
}

std::string_view LINE_WORDS::NextText() {
  SkipBlanks();
  const std::size_t start = position;
  const std::size_t stop = std::min(line.find('\0', start), line.size());
  position = stop;
  if (start < stop && line[start] == '"') {
    for (std::size_t i = start + 1; i < stop; ++i) {
      if (line[i] == '"' && line[i - 1] != '\\') {
        position = i + 1;
        break;
      }
    }
  }
  return line.substr(start, position - start);
}

FINDING CheckValue(TYPE_CODE scalar, LINE_WORDS& words) {
  FINDING worst;
  const std::vector<TYPE_CODE> parts = PartsOf(scalar);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    LINE_WORDS ahead = words;
    if (i > 0 && ahead.Next().empty()) return Error("the second part of the value is missing");
    FINDING finding = CheckPart(parts[i], words);
    if (finding && finding->severity == SEVERITY::ERROR) return finding;
    if (finding) worst = finding;
  }
  if (worst) return worst;
  const std::string_view surplus = words.Next();
  if (surplus.find_first_not_of('\0') != surplus.npos) {
    return Warning(Quoted(surplus) + " behind the value is ignored");
  }
  return {};
}

}  // namespace varnoth
