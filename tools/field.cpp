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
  // A search for one of several characters costs a call for each byte.
  const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<double> NumberOf(std::string_view word) {
  if (word.starts_with('+')) word.remove_prefix(1);
  const std::optional<double> plain = PlainNumber(word);
  if (plain || word.find_first_of("Dd") == word.npos) return plain;
  std::string text(word);
  std::ranges::replace_if(
      text, [](char c) { return c == 'D' || c == 'd'; }, 'E');
  return PlainNumber(text);
}

}  // namespace varnoth::tools
