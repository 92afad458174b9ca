#include "text/formatted_text.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#include "text/number_text.hpp"

namespace varnoth {

namespace {

constexpr int DEFAULT_PRECISION = 6;

/// What stands between "%" and the letter of a conversion.
struct CONVERSION {
  bool shows_plus = false;
  int width = 0;
  int precision = -1;  ///< -1: not given
  bool is_long = false;
};

int ReadNumber(const char*& at) {
  int number = 0;
  // Four digits are more than any text here can have.
  for (; *at >= '0' && *at <= '9' && number < 1000; ++at) number = 10 * number + (*at - '0');
  return number;
}

CONVERSION ReadConversion(const char*& at) {
  CONVERSION conversion;
  if (*at == '+') conversion.shows_plus = true, ++at;
  // A leading zero is a flag, which is not among those that are known here.
  if (*at != '0') conversion.width = ReadNumber(at);
  if (*at == '.') conversion.precision = ReadNumber(++at);
  if (*at == 'l') conversion.is_long = true, ++at;
  return conversion;
}

/// A buffer that gets its text piece by piece. Each operation returns false if there is no room.
class TEXT_IN_PLACE {
 public:
  TEXT_IN_PLACE(char* buffer, std::size_t size) : end(buffer), last(buffer + size) {}
  char* End() const { return end; }

  bool Add(std::string_view text) {
    if (last - end < static_cast<std::ptrdiff_t>(text.size())) return false;
    end = std::copy(text.begin(), text.end(), end);
    return true;
  }
  bool Add(std::string_view text, const CONVERSION& how) {
    return AddBlanks(how.width - static_cast<int>(text.size())) && Add(text);
  }
  bool AddNumber(std::string_view text, const CONVERSION& how) {
    const bool has_plus = how.shows_plus && text.front() != '-';
    return AddBlanks(how.width - static_cast<int>(text.size()) - (has_plus ? 1 : 0)) &&
           Add(has_plus ? "+" : "") && Add(text);
  }

 private:
  bool AddBlanks(int count) {
    if (last - end < count) return false;
    if (count > 0) end = std::fill_n(end, count, ' ');
    return true;
  }

  char* end;
  char* const last;
};

/// The arguments in a class, as functions can't take a std::va_list by reference everywhere.
struct ARGUMENTS {
  std::va_list list;
};

/// Adds the argument that belongs to a conversion; false if the conversion is not known here.
bool AddArgument(TEXT_IN_PLACE& text, char letter, const CONVERSION& how, ARGUMENTS& arguments) {
  char number[64];
  if (letter == 's' && how.precision < 0 && !how.is_long && !how.shows_plus) {
    const char* const argument = va_arg(arguments.list, const char*);
    return argument != nullptr && text.Add(argument, how);
  }
  if (letter == 'd' && how.precision < 0) {
    const long argument = how.is_long ? va_arg(arguments.list, long) : va_arg(arguments.list, int);
    const auto result = std::to_chars(number, std::end(number), argument);
    return text.AddNumber({number, result.ptr}, how);
  }
  if (letter == 'f' || letter == 'e') {
    const auto write = letter == 'f' ? FixedText : ScientificText;
    const auto result = write(number, std::end(number), va_arg(arguments.list, double),
                              how.precision < 0 ? DEFAULT_PRECISION : how.precision);
    return result.ec == std::errc() && text.AddNumber({number, result.ptr}, how);
  }
  return false;
}

bool AddAll(TEXT_IN_PLACE& text, const char* format, ARGUMENTS& arguments) {
  while (const char* const percent = std::strchr(format, '%')) {
    if (!text.Add({format, percent})) return false;
    format = percent + 1;
    const CONVERSION how = ReadConversion(format);
    if (!AddArgument(text, *format, how, arguments)) return false;
    ++format;
  }
  return text.Add(format) && text.Add(std::string_view("\0", 1));
}

}  // namespace

int FormatText(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
  TEXT_IN_PLACE text(buffer, size);
  ARGUMENTS copy;
  va_copy(copy.list, arguments);
  const bool is_known = AddAll(text, format, copy);
  va_end(copy.list);
  return is_known ? static_cast<int>(text.End() - buffer) - 1
                  : std::vsnprintf(buffer, size, format, arguments);
}

std::string FormattedText(const char* format, std::va_list arguments) {
  char buffer[1024];
  std::va_list copy;
  va_copy(copy, arguments);
  const auto length =
      static_cast<std::size_t>(std::max(FormatText(buffer, sizeof buffer, format, copy), 0));
  va_end(copy);
  if (length < sizeof buffer) return {buffer, length};
  std::string text(length, '\0');
  std::vsnprintf(text.data(), length + 1, format, arguments);
  return text;
}

}  // namespace varnoth
