#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "text/formatted_text.hpp"
#include "text/number_text.hpp"

namespace varnoth::test {
namespace {

/// Numbers of every kind: all bit patterns, ordinary sizes, exact halves of the last digit and
/// their neighbours, powers of ten and theirs, and the ends of the number line.
std::vector<double> Numbers() {
  using LIMITS = std::numeric_limits<double>;
  std::vector<double> numbers = {0.0,           LIMITS::infinity(),   LIMITS::quiet_NaN(),
                                 LIMITS::max(), LIMITS::denorm_min(), LIMITS::min()};
  const auto add_with_neighbours = [&](double x) {
    for (const double number : {std::nextafter(x, 0.0), x, std::nextafter(x, LIMITS::max())}) {
      numbers.push_back(number);
    }
  };
  std::mt19937_64 random(2027);
  for (int i = 0; i < 700; ++i) {
    numbers.push_back(std::bit_cast<double>(random()));
    numbers.push_back(std::exp2(static_cast<double>(random() % 16000) / 100.0 - 90.0));
    const double whole = static_cast<double>(random() >> (11 + random() % 53));
    add_with_neighbours(std::ldexp(whole + 0.5, -static_cast<int>(random() % 24)));
    add_with_neighbours((whole + 0.5) / std::pow(10.0, static_cast<int>(random() % 20)));
  }
  for (int i = -323; i <= 308; ++i)
    add_with_neighbours(std::strtod(("1e" + std::to_string(i)).c_str(), nullptr));
  for (std::size_t i = numbers.size(); i-- > 0;) numbers.push_back(-numbers[i]);
  return numbers;
}

std::string Printed(const char* format, ...) {
  char text[2048];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

std::string Formatted(std::size_t size, const char* format, ...) {
  std::string text(size + 1, '~');
  std::va_list arguments;
  va_start(arguments, format);
  const int length = FormatText(text.data(), size, format, arguments);
  va_end(arguments);
  EXPECT_EQ(text.back(), '~');
  return std::to_string(length) + text.c_str();
}

TEST(NumberText, IsThatOfPrintf) {
  using WRITER = decltype(&FixedText);
  struct {
    WRITER write;
    const char* format;
    int most_digits;
  } const forms[] = {{FixedText, "%.*f", 23}, {ScientificText, "%.*e", 19}};
  for (const double number : Numbers()) {
    for (const auto& form : forms) {
      for (int digits = 0; digits <= form.most_digits; ++digits) {
        char text[400];
        const auto [end, error] = form.write(text, std::end(text), number, digits);
        ASSERT_EQ(std::string(text, end), Printed(form.format, digits, number)) << digits;
      }
    }
  }
}

TEST(NumberText, FailsWhereItDoesNotFit) {
  for (const double number : {123456.5, 1e80, -std::numeric_limits<double>::infinity()}) {
    const std::string printed = Printed("%.1f", number);
    std::string text(printed.size(), ' ');
    char* const last = text.data() + text.size();
    EXPECT_NE(FixedText(text.data(), last - 1, number, 1).ec, std::errc());
    EXPECT_EQ(FixedText(text.data(), last, number, 1).ptr, last);
    EXPECT_EQ(text, printed);
  }
}

/// A format with one argument, which is checked in buffers of every size that matters.
template <class... ARGUMENT>
void ExpectAsPrinted(const char* format, ARGUMENT... argument) {
  const std::string printed = Printed(format, argument...);
  for (const std::size_t size : {std::size_t{1}, printed.size() + 1, std::size_t{1500}}) {
    EXPECT_EQ(Formatted(size, format, argument...),
              std::to_string(printed.size()) + printed.substr(0, size - 1))
        << format;
  }
}

std::string Whole(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::string text = FormattedText(format, arguments);
  va_end(arguments);
  return text;
}

TEST(FormattedText, IsWholeWhateverItsLength) {
  for (const std::size_t length : {0, 1022, 1023, 1024, 100000}) {
    const std::string text(length, 'x');
    EXPECT_EQ(Whole("%s", text.c_str()), text);
  }
}

TEST(FormattedText, IsThatOfPrintf) {
  for (const double number : {0.0, -0.0, 12.345, -12.345, 1e300, -1e-300, std::nan(""),
                              -std::nan(""), std::numeric_limits<double>::infinity()}) {
    for (const char* format :
         {"%f",     "%lf",   "%e",      "%g",      "%a",    "%G",      "%E",       "% f",
          "%-12f|", "%012f", "%+4.2f|", "%+9.2f|", "%5.4f", "%3.2lf",  "%6.2f %%", "%.0f",
          "%#.0f",  "%.f",   "%+e",     "%20.3e",  "%.17e", "%+-09.1f"}) {
      ExpectAsPrinted(format, number);
    }
    ExpectAsPrinted("%d: %5.1f m, %s %ld|%+d", -7, number, "word", 1L << 40, 8);
    ExpectAsPrinted("%*.*f", 9, 3, number);
  }
  for (const int number : {0, 7, -7, 123456, std::numeric_limits<int>::min()}) {
    for (const char* format :
         {"%d", "%5d", "%+d", "%+5d", "%05d", "%-5d|", "%.4d", "%i", "%x", "%u"}) {
      ExpectAsPrinted(format, number);
    }
  }
  ExpectAsPrinted("%zu %lu %lld", std::size_t{5}, ~0UL, -5LL);
  for (const char* text : {"", "text", static_cast<const char*>(nullptr)}) {
    for (const char* format : {"%s", "|%8s|", "%-8s|", "%.2s", "%+s"})
      ExpectAsPrinted(format, text);
  }
  ExpectAsPrinted("%s", std::string(1400, 'x').c_str());
}

}  // namespace
}  // namespace varnoth::test
