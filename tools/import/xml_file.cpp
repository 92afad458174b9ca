#include "tools/import/xml_file.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace varnoth::tools {

namespace {

template <class X>
bool ParseWhole(std::string_view text, X& value) {
  if (text.starts_with('+')) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end && !text.empty();
}

std::string Shortened(std::string text) {
  constexpr std::size_t SHOWN = 40;
  if (text.size() > SHOWN) text = text.substr(0, SHOWN) + "...";
  return "'" + text + "'";
}

}  // namespace

XML_FILE::XML_FILE(const SOURCE_FILE& source) : name(source.name) {
  const std::string& text = source.content;
  for (std::size_t i = text.find('\n'); i != text.npos; i = text.find('\n', i + 1)) {
    line_ends.push_back(i);
  }
  const pugi::xml_parse_result result =
      document.load_buffer(text.data(), text.size(),
                           pugi::parse_default | pugi::parse_doctype | pugi::parse_trim_pcdata);
  if (!result) {
    throw IMPORT_FAILURE(name, LineAt(result.offset),
                         "not whole XML: " + std::string(result.description()));
  }
  for (const pugi::xml_node node : document) {
    if (node.type() == pugi::node_doctype) {
      Fail(Root(), "has a document type declaration, which no such file has");
    }
  }
}

std::size_t XML_FILE::LineAt(std::ptrdiff_t offset) const {
  if (offset < 0) return 1;
  const auto end =
      std::lower_bound(line_ends.begin(), line_ends.end(), static_cast<std::size_t>(offset));
  return static_cast<std::size_t>(end - line_ends.begin()) + 1;
}

void XML_FILE::Fail(pugi::xml_node at, const std::string& text) const {
  throw IMPORT_FAILURE(name, LineAt(at.offset_debug()), text);
}

pugi::xml_node XML_FILE::Find(pugi::xml_node from, const char* path) const {
  const pugi::xml_node node = from.first_element_by_path(path);
  if (!node) Fail(from, "no " + std::string(path) + " in " + from.name());
  return node;
}

std::string XML_FILE::Text(pugi::xml_node from, const char* path) const {
  return Find(from, path).child_value();
}

double XML_FILE::Number(pugi::xml_node from, const char* path) const {
  const pugi::xml_node node = Find(from, path);
  double value = 0.0;
  if (!ParseWhole(node.child_value(), value) || !std::isfinite(value)) {
    Fail(node, std::string(node.name()) + " " + Shortened(node.child_value()) + " is no number");
  }
  return value;
}

std::int64_t XML_FILE::Whole(pugi::xml_node from, const char* path) const {
  const pugi::xml_node node = Find(from, path);
  constexpr std::int64_t LARGEST = 1000000000000;  // sums of some of them fit as well
  std::int64_t value = 0;
  if (!ParseWhole(node.child_value(), value) || value > LARGEST || value < -LARGEST) {
    Fail(node,
         std::string(node.name()) + " " + Shortened(node.child_value()) + " is no whole number");
  }
  return value;
}

MOMENT XML_FILE::Time(pugi::xml_node from, const char* path, std::string_view prefix) const {
  const pugi::xml_node node = Find(from, path);
  std::string_view text = node.child_value();
  const bool has_prefix = text.starts_with(prefix);
  if (has_prefix) text.remove_prefix(prefix.size());
  const std::optional<MOMENT> moment = MomentFromText(text);
  if (!moment || !has_prefix) {
    Fail(node, std::string(node.name()) + " " + Shortened(node.child_value()) +
                   " is no time of the years 1970 to 2099");
  }
  return *moment;
}

}  // namespace varnoth::tools
