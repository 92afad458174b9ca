#include <algorithm>
#include <charconv>
#include <cstdio>
#include <sstream>
#include <stdexcept>

#include "tools/pool/commands.hpp"
#include "tools/pool/document.hpp"
#include "tools/pool/value_text.hpp"
#include "tools/pool/value_words.hpp"

namespace varnoth {

namespace {

void Print(const JSON& json) {
  // A file's name may be no UTF-8.
  const std::string text = json.dump(-1, ' ', false, JSON::error_handler_t::replace);
  std::printf("%s\n", text.c_str());
}

void TellFailure(const POOL_DOCUMENT& pool, const POOL_ENTRY& entry) {
  Tell(pool.file, entry.line, SEVERITY::ERROR,
       entry.key + " " + entry.type + " can't be read (" + entry.failure +
           "), \"pool check\" tells why");
}

/// A vector or matrix shows its size, its first elements and its last one.
std::string ShortText(const POOL_ENTRY& entry) {
  constexpr std::size_t SHOWN = 3;
  if (entry.value.is_null()) return "?";
  if (ShapeOf(entry.code) == SHAPE::SCALAR) return ElementText(entry.value, entry.code, true);
  std::vector<JSON> elements;
  const JSON& values = entry.value["values"];
  std::string text = "[" + std::to_string(values.size());
  if (ShapeOf(entry.code) == SHAPE::VECTOR) {
    elements.assign(values.begin(), values.end());
  } else {
    text += "x" + std::to_string(values.empty() ? 0 : values[0].size());
    for (const JSON& row : values) elements.insert(elements.end(), row.begin(), row.end());
  }
  text += "]";
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const bool is_shown = i < SHOWN || i + 1 == elements.size();
    if (is_shown) text += " " + ElementText(elements[i], entry.code, true);
    if (i == SHOWN && !is_shown) text += " ...";
  }
  return text;
}

std::string OneLine(const std::string& comment) {
  std::istringstream words(comment);
  std::string line = "#";
  for (std::string word; words >> word;) line += " " + word;
  return line;
}

/// Width on the screen of UTF-8 made from Latin-1.
std::size_t Width(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

void PrintTable(const POOL_DOCUMENT& pool) {
  std::vector<std::vector<std::string>> rows;
  std::size_t widths[3] = {};
  for (const POOL_ENTRY& entry : pool.entries) {
    rows.push_back(
        {entry.key, entry.type, ShortText(entry), entry.comment ? OneLine(*entry.comment) : ""});
    for (std::size_t i = 0; i < 3; ++i) widths[i] = std::max(widths[i], Width(rows.back()[i]));
  }
  // A long text must not push all comments out of sight.
  widths[2] = std::min<std::size_t>(widths[2], 48);
  for (const std::vector<std::string>& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (row[i].empty()) continue;
      line += row[i];
      if (i + 1 < row.size())
        line.append(std::max(widths[i], Width(row[i])) - Width(row[i]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    std::printf("%s\n", line.c_str());
  }
}

std::string NumberText(const JSON& number, bool is_single) {
  if (!number.is_number_float()) return number.dump();
  char text[32];
  const auto value = number.get<double>();
  const auto [end, error] = is_single
                                ? std::to_chars(text, text + sizeof text, static_cast<float>(value))
                                : std::to_chars(text, text + sizeof text, value);
  return std::string(text, end);
}

}  // namespace

std::string ElementText(const JSON& element, TYPE_CODE code, bool with_quotes) {
  if (element.is_array()) {
    return ElementText(element[0], code, with_quotes) + " " +
           ElementText(element[1], code, with_quotes);
  }
  const TYPE_CODE last_part = PartsOf(ElementOf(code)).back();
  if (element.is_string()) {
    const std::string text = element.get<std::string>();
    return with_quotes && last_part == STR ? "\"" + text + "\"" : text;
  }
  if (element.is_boolean()) return element.get<bool>() ? "TRUE" : "FALSE";
  return NumberText(element, last_part == FLT_6);
}

TOOL_STATUS ShowPools(const std::vector<std::string>& files, bool as_json) {
  TOOL_STATUS status = GOOD;
  JSON shown = JSON::array();
  for (const std::string& file : files) {
    POOL_DOCUMENT pool;
    try {
      pool = ReadDocument(file);
    } catch (const std::runtime_error& error) {
      Tell(file, 1, SEVERITY::ERROR, error.what());
      status = FINDINGS;
      continue;
    }
    JSON entries = JSON::array();
    for (const POOL_ENTRY& entry : pool.entries) {
      if (entry.value.is_null()) {
        TellFailure(pool, entry);
        status = FINDINGS;
      }
      if (!as_json) continue;
      entries.push_back({{"key", entry.key},
                         {"type", entry.type},
                         {"line", entry.line},
                         {"comment", entry.comment ? JSON(*entry.comment) : JSON(nullptr)},
                         {"value", entry.value}});
    }
    if (as_json) {
      shown.push_back({{"file", file}, {"entries", std::move(entries)}});
      continue;
    }
    if (files.size() > 1) std::printf("%s%s:\n", file == files.front() ? "" : "\n", file.c_str());
    PrintTable(pool);
  }
  if (as_json && files.size() > 1) Print(shown);
  if (as_json && files.size() == 1 && !shown.empty()) Print(shown[0]);
  return status;
}

TOOL_STATUS GetValue(const std::string& file, const std::string& key, bool as_json) {
  POOL_DOCUMENT pool;
  try {
    pool = ReadDocument(file);
  } catch (const std::runtime_error& error) {
    Tell(file, 1, SEVERITY::ERROR, error.what());
    return FINDINGS;
  }
  const POOL_ENTRY* const entry = pool.Find(key);
  if (entry == nullptr) {
    Tell(file, 1, SEVERITY::ERROR, "no key " + key);
    return FINDINGS;
  }
  if (entry->value.is_null()) {
    TellFailure(pool, *entry);
    return FINDINGS;
  }
  if (as_json) {
    Print(entry->value);
    return GOOD;
  }
  const SHAPE shape = ShapeOf(entry->code);
  const JSON lines = shape == SHAPE::SCALAR ? JSON::array({entry->value}) : entry->value["values"];
  for (const JSON& line : lines) {
    std::string text;
    if (shape == SHAPE::MATRIX) {
      for (const JSON& element : line) {
        text += (text.empty() ? "" : "\t") + ElementText(element, entry->code, false);
      }
    } else {
      text = ElementText(line, entry->code, false);
    }
    std::printf("%s\n", text.c_str());
  }
  return GOOD;
}

}  // namespace varnoth
