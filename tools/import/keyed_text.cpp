#include "tools/import/keyed_text.hpp"

#include <algorithm>
#include <cmath>

namespace varnoth::tools {

std::string Upper(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

std::vector<std::string_view> WordsOf(std::string_view line, const char* dividers) {
  std::vector<std::string_view> words;
  for (std::size_t i = line.find_first_not_of(dividers); i != line.npos;) {
    const std::size_t stop = std::min(line.find_first_of(dividers, i), line.size());
    words.push_back(line.substr(i, stop - i));
    i = line.find_first_not_of(dividers, stop);
  }
  return words;
}

std::vector<std::string_view> LinesOf(const std::string& content) {
  std::vector<std::string_view> lines;
  std::string_view rest = content;
  while (!rest.empty()) {
    const std::size_t stop = std::min(rest.find('\n'), rest.size());
    lines.push_back(rest.substr(0, stop));
    rest.remove_prefix(std::min(stop + 1, rest.size()));
  }
  return lines;
}

KEYED_TEXT::KEYED_TEXT(SOURCE_FILE source, char divider) : file(std::move(source)) {
  std::size_t number = 0;
  for (const std::string_view line : LinesOf(file.content)) {
    ++number;
    const std::size_t at = line.find(divider);
    if (at == line.npos) continue;
    places[std::string(Trimmed(line.substr(0, at)))] = {number, Trimmed(line.substr(at + 1))};
  }
}

bool KEYED_TEXT::Has(const std::string& key) const {
  const auto place = places.find(key);
  return place != places.end() && !place->second.value.empty();
}

std::string KEYED_TEXT::Text(const std::string& key) const {
  const auto place = places.find(key);
  if (place == places.end()) throw IMPORT_FAILURE(file.name, 1, "has no " + key);
  if (place->second.value.empty()) Fail(key, "has no value");
  return std::string(place->second.value);
}

std::vector<double> KEYED_TEXT::Numbers(const std::string& key, std::size_t count) const {
  const std::string text = Text(key);
  const std::vector<std::string_view> words = WordsOf(text);
  if (words.size() < count) Fail(key, "needs " + std::to_string(count) + " numbers");
  std::vector<double> numbers;
  for (std::size_t i = 0; i < count; ++i) {
    const std::optional<double> number = NumberOf(words[i]);
    if (!number) Fail(key, "'" + std::string(words[i].substr(0, 40)) + "' is no number");
    numbers.push_back(*number);
  }
  return numbers;
}

std::int64_t KEYED_TEXT::Whole(const std::string& key) const {
  constexpr double LARGEST = 1e9;  // the product of two is an integer still
  const double number = Number(key);
  if (number != std::floor(number) || std::abs(number) > LARGEST) Fail(key, "is no whole number");
  return static_cast<std::int64_t>(number);
}

void KEYED_TEXT::Fail(const std::string& key, const std::string& text) const {
  const auto place = places.find(key);
  throw IMPORT_FAILURE(file.name, place == places.end() ? 1 : place->second.line,
                       key + ": " + text);
}

}  // namespace varnoth::tools
