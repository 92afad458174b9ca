#include "tools/import/interpolation.hpp"

#include <charconv>
#include <map>
#include <vector>

namespace varnoth::tools {

namespace {

/// A method, the numbers that may stand behind its name, and the vectors that it needs beyond a
/// scene whatever the numbers say.
struct METHOD {
  std::size_t most_numbers;
  std::size_t vectors_beyond;
};

const std::map<std::string, METHOD> METHODS = {
    {"everett", {1, 1}},        {"polynom", {0, 1}},      {"polyfit", {1, 1}},
    {"chebyshev", {1, 1}},      {"spline", {0, 5}},       {"hermite", {0, 1}},
    {"localpolynom", {2, 1}},   {"localpolyfit", {2, 1}}, {"localchebyshev", {2, 1}},
    {"localhermite", {2, 1}},
};

}  // namespace

std::optional<INTERPOLATION> FindInterpolation(const std::string& text) {
  constexpr const char* DIVIDERS = "_,;:-()";
  constexpr std::size_t USUAL_ORDER = 4;
  constexpr std::size_t USUAL_COUNT = 5;
  constexpr std::size_t MOST = 99;
  const std::size_t name_end = text.find_first_of(DIVIDERS);
  const std::string name = text.substr(0, name_end);
  const auto method = METHODS.find(name);
  if (method == METHODS.end()) return std::nullopt;
  std::vector<std::size_t> numbers;
  for (std::size_t i = name_end; i < text.size();) {
    const std::size_t start = text.find_first_not_of(DIVIDERS, i);
    if (start == text.npos) break;
    i = std::min(text.find_first_of(DIVIDERS, start), text.size());
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(text.data() + start, text.data() + i, number);
    if (error != std::errc() || stop != text.data() + i || number > MOST) return std::nullopt;
    numbers.push_back(number);
  }
  if (numbers.size() > method->second.most_numbers) return std::nullopt;

  INTERPOLATION found{text, name == "everett", method->second.vectors_beyond};
  if (name == "everett") {
    const std::size_t order = numbers.empty() ? USUAL_ORDER : numbers[0];
    if (order % 2 != 0) return std::nullopt;
    found.vectors_beyond = std::max<std::size_t>(order / 2, 1);
  } else if (name.starts_with("local")) {
    found.vectors_beyond = ((numbers.size() < 2 ? USUAL_COUNT : numbers[1]) + 1) / 2;
  }
  return found;
}

}  // namespace varnoth::tools
