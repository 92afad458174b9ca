#include "tools/report/remedies.hpp"

namespace varnoth::tools {

namespace {

/// The cells of a Markdown table's row; "\|" is a character of a cell.
std::vector<std::string> Cells(std::string_view row) {
  std::vector<std::string> cells(1);
  for (std::size_t i = 1; i < row.size(); ++i) {
    if (row[i] == '\\' && i + 1 < row.size() && row[i + 1] == '|') {
      cells.back() += row[++i];
    } else if (row[i] == '|') {
      cells.emplace_back();
    } else {
      cells.back() += row[i];
    }
  }
  cells.pop_back();  // what follows the last bar
  return cells;
}

/// Without the marks of Markdown: of a link its words stay.
std::string PlainText(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t close =
        text[i] == ']' && text.substr(i + 1, 1) == "(" ? text.find(')', i) : text.npos;
    if (close != text.npos) {
      i = close;
    } else if (text[i] != '`' && text[i] != '[' && text.substr(i, 2) != "**") {
      plain += text[i];
    } else if (text[i] == '*') {
      ++i;
    }
  }
  const std::size_t first = plain.find_first_not_of(' ');
  if (first == plain.npos) return "";
  return plain.substr(first, plain.find_last_not_of(' ') - first + 1);
}

std::string LevelBefore(std::string_view text) {
  for (const std::string_view level : {"WARN", "EXCEP"}) {
    if (text.ends_with(std::string(level) + " ")) return std::string(level);
  }
  return "ALARM";
}

/// The parts of "no value for index <n>" that do not vary.
std::vector<std::string> FixedParts(std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t open = text.find('<');
    const std::size_t close = open == text.npos ? text.npos : text.find('>', open);
    const bool varies = close != text.npos && open + 1 < text.size() && text[open + 1] != '<' &&
                        text[open + 1] != ' ' && text[close - 1] != ' ';
    const std::size_t end = varies ? open : close == text.npos ? text.size() : open + 1;
    if (end > 0) parts.emplace_back(text.substr(0, end));
    text.remove_prefix(varies ? close + 1 : end);
  }
  return parts;
}

bool Fits(const std::vector<std::string>& parts, std::string_view text) {
  std::size_t at = 0;
  for (const std::string& part : parts) {
    at = text.find(part, at);
    if (at == text.npos) return false;
    at += part.size();
  }
  return true;
}

}  // namespace

REMEDY_BOOK::REMEDY_BOOK(std::string_view page) {
  while (!page.empty()) {
    const std::string_view line = page.substr(0, page.find('\n'));
    page.remove_prefix(std::min(page.size(), line.size() + 1));
    if (!line.starts_with("| ")) continue;
    const std::vector<std::string> cells = Cells(line);
    if (cells.size() < 2 || cells[0].find('`') == std::string::npos) continue;
    const bool has_meaning = cells.size() > 2;
    rows.push_back({has_meaning ? PlainText(cells[1]) : "", PlainText(cells.back())});
    std::string_view texts = cells[0];
    for (std::size_t open = texts.find('`'); open != texts.npos; open = texts.find('`')) {
      const std::size_t close = std::min(texts.find('`', open + 1), texts.size() - 1);
      const std::string_view text = texts.substr(open + 1, close - open - 1);
      PATTERN pattern{LevelBefore(texts.substr(0, open)), FixedParts(text), 0, rows.size() - 1};
      for (const std::string& part : pattern.parts) pattern.length += part.size();
      // A single word is the name of a part, no message.
      if (text.find(' ') != text.npos && pattern.length > 0) patterns.push_back(pattern);
      texts.remove_prefix(close + 1);
    }
  }
}

std::optional<std::size_t> REMEDY_BOOK::Find(const std::string& level,
                                             std::string_view text) const {
  const PATTERN* best = nullptr;
  for (const PATTERN& pattern : patterns) {
    const bool is_longer = best == nullptr || pattern.length > best->length;
    if (is_longer && pattern.level == level && Fits(pattern.parts, text)) best = &pattern;
  }
  if (best == nullptr) return std::nullopt;
  return best->row;
}

}  // namespace varnoth::tools
