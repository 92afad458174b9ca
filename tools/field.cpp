#include "tools/field.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace varnoth::tools {

namespace {

std::optional<double> PlainNumber(std::string_view word) {
  double value = 0.0;
  const auto [stop, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  const bool is_whole = error == std::errc() && stop == word.data() + word.size();
  return is_whole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view BLANKS = " \t\r";
  const std::size_t start = text.find_first_not_of(BLANKS);
  if (start == text.npos) return {};
  return text.substr(start, text.find_last_not_of(BLANKS) - start + 1);
}

std::optional<double> NumberOf(std::string_view word) {
  if (word.starts_with('+')) word.remove_prefix(1);
  if (word.find_first_of("Dd") == word.npos) return PlainNumber(word);
  std::string text(word);
  std::ranges::replace_if(
      text, [](char c) { return c == 'D' || c == 'd'; }, 'E');
  return PlainNumber(text);
}

}  // namespace varnoth::tools
