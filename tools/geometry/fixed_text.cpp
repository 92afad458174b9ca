#include "tools/geometry/fixed_text.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace varnoth::tools {

namespace {

constexpr std::uint64_t POWERS[] = {
    1,         10,         100,         1000,         10000,         100000,        1000000,
    10'000000, 100'000000, 1000'000000, 10000'000000, 100000'000000, 1000000'000000};

/// "00", "01", ... "99": the digits are written in pairs.
constexpr auto PAIRS = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// Writes at least `count` digits before `at`, and more if the number has more.
char* PutDigits(char* at, std::uint64_t number, int count) {
  for (; count > 1 || number > 9; count -= 2, number /= 100) {
    *--at = PAIRS[2 * (number % 100) + 1];
    *--at = PAIRS[2 * (number % 100)];
  }
  if (count > 0 || number > 0) *--at = static_cast<char>('0' + number);
  return at;
}

void AppendExact(std::string& text, double value, int decimals) {
  char digits[400];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
  text.append(digits, end.ptr);
}

}  // namespace

void AppendFixed(std::string& text, double value, int decimals) {
  constexpr double LARGEST = 0x1p53;
  const double amount = std::fabs(value);
  if (!(amount < LARGEST)) {
    AppendExact(text, value, decimals);
    return;
  }
  const std::uint64_t power = POWERS[decimals];
  auto whole = static_cast<std::uint64_t>(amount);
  const double rest = amount - static_cast<double>(whole);
  auto fraction = static_cast<std::uint64_t>(std::llround(rest * static_cast<double>(power)));
  if (fraction == power) {
    fraction = 0;
    ++whole;
  }
  char room[40];
  char* const end = room + sizeof room;
  char* at = end;
  if (decimals > 0) {
    at = PutDigits(at, fraction, decimals);
    *--at = '.';
  }
  at = PutDigits(at, whole, 1);
  if (std::signbit(value) && (whole > 0 || fraction > 0)) *--at = '-';
  text.append(at, end);
}

}  // namespace varnoth::tools
