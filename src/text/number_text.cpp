#include "text/number_text.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>

namespace varnoth {

namespace {

// The compilers' own type: exact products of a mantissa and a power of ten.
__extension__ using WIDE = unsigned __int128;

constexpr int MANTISSA_BITS = 52;
/// 2^53 * 10^22 is below 2^127.
constexpr int LARGEST_POWER = 22;
/// Above it, a sum of a power of ten and a smaller number may not fit 64 bits.
constexpr int MOST_DIGITS = 18;
/// Sign, point, exponent and twice the digits of a 64-bit number.
constexpr std::ptrdiff_t ROOM = 48;

constexpr auto POWERS_OF_TEN = [] {
  std::array<WIDE, LARGEST_POWER + 1> powers{1};
  for (int i = 1; i <= LARGEST_POWER; ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

constexpr std::uint64_t PowerOfTen(int power) {
  return static_cast<std::uint64_t>(POWERS_OF_TEN[power]);
}

int ExponentBits(double value) {
  return static_cast<int>(std::bit_cast<std::uint64_t>(value) >> MANTISSA_BITS) & 0x7ff;
}

/// The magnitude of `value`, times 10^power, rounded to the nearest whole number and halves to the
/// even one, as printf rounds. Nothing where 128 bits don't hold the exact product, where the
/// result has 20 digits, or where `value` is not normal.
std::optional<std::uint64_t> Scaled(double value, int power) {
  constexpr int BIAS = 1023 + MANTISSA_BITS;
  const int shift = BIAS - ExponentBits(value);
  if (power < 0 || power > LARGEST_POWER || shift < 1 || shift >= BIAS) return {};
  // The magnitude is mantissa / 2^shift.
  const std::uint64_t hidden_bit = std::uint64_t{1} << MANTISSA_BITS;
  const std::uint64_t mantissa =
      (std::bit_cast<std::uint64_t>(value) & (hidden_bit - 1)) | hidden_bit;
  if (shift > 127) return 0;
  const WIDE product = mantissa * POWERS_OF_TEN[power];
  const WIDE whole = product >> shift;
  if (whole >= PowerOfTen(19)) return {};
  const WIDE rest = product - (whole << shift);
  const WIDE half = WIDE{1} << (shift - 1);
  const bool rounds_up = rest > half || (rest == half && (whole & 1) != 0);
  return static_cast<std::uint64_t>(whole) + (rounds_up ? 1 : 0);
}

/// Works for every number, at the speed of the library.
std::to_chars_result LibraryText(char* first, char* last, double value, std::chars_format format,
                                 int digits) {
  if (std::isfinite(value)) return std::to_chars(first, last, value, format, digits);
  char text[8];
  const int length = std::snprintf(text, sizeof text, "%f", value);
  if (last - first < length) return {last, std::errc::value_too_large};
  return {std::copy_n(text, length, first), std::errc()};
}

}  // namespace

std::to_chars_result FixedText(char* first, char* last, double value, int digits) {
  const auto scaled = digits > 0 && digits <= MOST_DIGITS && last - first >= ROOM
                          ? Scaled(value, digits)
                          : std::nullopt;
  if (!scaled) return LibraryText(first, last, value, std::chars_format::fixed, digits);
  if (std::signbit(value)) *first++ = '-';
  const std::uint64_t unit = PowerOfTen(digits);
  char* const point = std::to_chars(first, last, *scaled / unit).ptr;
  // A leading 1 keeps the zeros behind the point; the point takes its place.
  char* const end = std::to_chars(point, last, unit + *scaled % unit).ptr;
  *point = '.';
  return {end, std::errc()};
}

std::to_chars_result ScientificText(char* first, char* last, double value, int digits) {
  const auto by_library = [&] {
    return LibraryText(first, last, value, std::chars_format::scientific, digits);
  };
  if (digits <= 0 || digits >= MOST_DIGITS || last - first < ROOM) return by_library();
  // The power of ten in the binary exponent, times log10(2); at most 1 too small.
  int exponent = ((ExponentBits(value) - 1023) * 78913) >> 18;
  auto scaled = Scaled(value, digits - exponent);
  if (scaled && *scaled >= PowerOfTen(digits + 1)) scaled = Scaled(value, digits - ++exponent);
  if (!scaled || *scaled < PowerOfTen(digits)) return by_library();
  if (std::signbit(value)) *first++ = '-';
  char* end = std::to_chars(first + 1, last, *scaled).ptr;
  first[0] = first[1];
  first[1] = '.';
  *end++ = 'e';
  *end++ = exponent < 0 ? '-' : '+';
  const int magnitude = std::abs(exponent);
  *end++ = static_cast<char>('0' + magnitude / 10);
  *end++ = static_cast<char>('0' + magnitude % 10);
  return {end, std::errc()};
}

}  // namespace varnoth
