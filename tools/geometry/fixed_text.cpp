#include "tools/geometry/fixed_text.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace varnoth::tools {

namespace {

constexpr double POWERS[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};

void AppendExact(std::string& text, double value, int decimals) {
  char digits[400];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
  text.append(digits, end.ptr);
}

}  // namespace

void AppendFixed(std::string& text, double value, int decimals) {
  constexpr double LARGEST = 0x1p50;
  const double scaled = std::fabs(value) * POWERS[decimals];
  if (!(scaled < LARGEST)) {
    AppendExact(text, value, decimals);
    return;
  }
  char digits[24];
  char* const end = digits + sizeof digits;
  char* at = end;
  auto rest = static_cast<std::uint64_t>(scaled + 0.5);
  const bool is_negative = rest > 0 && std::signbit(value);
  for (int i = 0; i < decimals || rest > 0; ++i) {
    if (i == decimals && decimals > 0) *--at = '.';
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (end - at == decimals && decimals > 0) *--at = '.';
  if (at == end || *at == '.') *--at = '0';
  if (is_negative) *--at = '-';
  text.append(at, end);
}

}  // namespace varnoth::tools
