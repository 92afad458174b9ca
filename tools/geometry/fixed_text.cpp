#include "tools/geometry/fixed_text.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace varnoth::tools {

namespace {

constexpr int MOST_DECIMALS = 12;

constexpr auto POWERS = [] {
  std::array<std::uint64_t, MOST_DECIMALS + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 10 * powers[i - 1];
  return powers;
}();

/// "00", "01", ... "99": the digits are written in pairs.
constexpr auto PAIRS = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

int DigitsOf(std::uint64_t number) {
  int count = 1;
  while (count < MOST_DECIMALS && number >= POWERS[count]) ++count;
  return count;
}

/// Writes a number of `count` digits, with leading zeros, before `end`.
void PutDigits(char* end, std::uint64_t number, int count) {
  for (; count > 1; count -= 2, number /= 100) {
    end -= 2;
    std::memcpy(end, &PAIRS[2 * (number % 100)], 2);
  }
  if (count > 0) *--end = static_cast<char>('0' + number);
}

/// The nearest whole number to one from 0 to 2^51: the sum has no digit behind its point.
std::uint64_t Rounded(double value) {
  constexpr double ONE_PER_STEP = 0x1p52;
  return std::bit_cast<std::uint64_t>(value + ONE_PER_STEP) -
         std::bit_cast<std::uint64_t>(ONE_PER_STEP);
}

}  // namespace

char* PutFixed(char* at, double value, int decimals) {
  const double amount = std::fabs(value);
  if (!(amount < 1e12 - 1)) {
    return std::to_chars(at, at + FIXED_ROOM, value, std::chars_format::fixed, decimals).ptr;
  }
  const std::uint64_t power = POWERS[decimals];
  auto whole = static_cast<std::uint64_t>(amount);
  std::uint64_t fraction =
      Rounded((amount - static_cast<double>(whole)) * static_cast<double>(power));
  if (fraction == power) {
    fraction = 0;
    ++whole;
  }
  if (std::signbit(value) && (whole > 0 || fraction > 0)) *at++ = '-';
  const int whole_digits = DigitsOf(whole);
  at += whole_digits;
  PutDigits(at, whole, whole_digits);
  *at++ = '.';
  at += decimals;
  PutDigits(at, fraction, decimals);
  return at;
}

void AppendFixed(std::string& text, double value, int decimals) {
  char digits[FIXED_ROOM];
  text.append(digits, PutFixed(digits, value, decimals));
}

}  // namespace varnoth::tools
