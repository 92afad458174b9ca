#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "pool/entry_reader.hpp"
#include "tools/pool/commands.hpp"
#include "tools/pool/document.hpp"
#include "tools/pool/value_words.hpp"

namespace varnoth {

namespace {

std::string Plural(std::size_t count, const std::string& word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

class POOL_CHECK {
 public:
  explicit POOL_CHECK(const POOL_DOCUMENT& document) : pool(document), lines(document.lines) {}

  /// Tells all findings in the order of their lines. Whether the worst of them is a warning.
  bool Tell() {
    CheckLines();
    CheckKeys();
    for (const POOL_ENTRY& entry : pool.entries) CheckEntry(entry);
    CheckLooseLines();
    std::stable_sort(findings.begin(), findings.end(),
                     [](const FINDING& a, const FINDING& b) { return a.line < b.line; });
    // In blocks, since a broken file can have millions of findings.
    std::string block;
    for (const FINDING& finding : findings) {
      block += Message(pool.file, finding.line, finding.severity, finding.text);
      if (block.size() > 1 << 16) WriteOut(block);
    }
    WriteOut(block);
    return errors == 0;
  }

 private:
  struct FINDING {
    std::size_t line;
    SEVERITY severity;
    std::string text;
  };

  static void WriteOut(std::string& block) {
    std::fputs(block.c_str(), stderr);
    block.clear();
  }

  void Add(std::size_t index, SEVERITY severity, const std::string& text) {
    if (severity == SEVERITY::ERROR) ++errors;
    findings.push_back({lines[index].number, severity, text});
  }
  void Error(std::size_t index, const std::string& text) { Add(index, SEVERITY::ERROR, text); }
  void Warn(std::size_t index, const std::string& text) { Add(index, SEVERITY::WARNING, text); }

  std::string_view FirstWord(std::size_t index) const {
    return LINE_WORDS(lines[index].text).Next();
  }
  bool IsUnfinished(std::size_t index) const {
    return index + 1 == lines.size() && lines[index].end == 0;
  }

  void CheckLines() {
    std::size_t returns = 0;
    std::size_t first_return = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const POOL_LINE& line = lines[i];
      if (line.text.find('\0') != line.text.npos) Warn(i, "a NUL byte");
      if (line.is_continued && (i == 0 || !lines[i - 1].is_continued)) {
        Error(i, "the line is longer than " + std::to_string(ENTRY_READER::LINE_LIMIT) +
                     " bytes, the rest is taken for a new line");
      }
      if (line.end == '\r' && returns++ == 0) first_return = i;
      if (IsUnfinished(i)) Error(i, "the last line has no line end: an update would lose it");
    }
    if (returns > 0) {
      Warn(first_return, "carriage returns, in " + Plural(returns, "line") + ": write LF alone");
    }
  }

  void CheckKeys() {
    for (const POOL_ENTRY& entry : pool.entries) {
      const std::string bytes = ToLatin1(entry.key).value_or(entry.key);
      if (bytes.size() > ENTRY_READER::KEY_LIMIT) {
        Error(entry.at, "the key has " + std::to_string(bytes.size()) + " bytes, only the first " +
                            std::to_string(ENTRY_READER::KEY_LIMIT) + " count");
      }
      const POOL_ENTRY* const first = pool.Find(entry.key);
      if (first != &entry) {
        Warn(entry.at, entry.key + " stands in line " + std::to_string(first->line) +
                           " already, and that entry counts");
      }
    }
  }

  void CheckEntry(const POOL_ENTRY& entry) {
    const std::size_t errors_before = errors;
    if (entry.code == UNKNOWN) {
      Error(entry.at, entry.type.empty() ? "key " + entry.key + " without a type and a value"
                                         : "unknown type word " + entry.type);
      return;
    }
    LINE_WORDS words(lines[entry.at].text);
    words.Next();
    words.Next();
    current = &entry;
    if (ShapeOf(entry.code) == SHAPE::SCALAR) {
      CheckWords(entry.at, entry.code, words);
    } else {
      CheckBlock(words);
    }
    // Whatever else the reader refuses.
    const bool is_excused = errors > errors_before || IsUnfinished(entry.stop - 1);
    if (entry.value.is_null() && !is_excused) Error(entry.at, "refused: " + entry.failure);
  }

  void CheckWords(std::size_t index, TYPE_CODE scalar, LINE_WORDS& words) {
    if (const auto finding = CheckValue(scalar, words)) {
      Add(index, finding->severity, finding->text);
    }
  }

  void CheckBlock(LINE_WORDS& words) {
    const bool is_matrix = ShapeOf(current->code) == SHAPE::MATRIX;
    std::vector<int> numbers;
    for (int i = 0; i < (is_matrix ? 4 : 2); ++i) {
      LINE_WORDS ahead = words;
      const std::string word(ahead.Next());
      // The parts stand apart: what follows one is the next, not surplus.
      LINE_WORDS alone(word);
      const auto finding = CheckValue(INT_32, alone);
      if (finding && finding->severity == SEVERITY::ERROR) {
        Error(current->at, "first index and count of the block: " + finding->text);
        return;
      }
      numbers.push_back(std::stoi(word));
      words = ahead;
    }
    for (std::size_t i = current->at; i < current->stop; ++i) {
      if (lines[i].end == '\r') {
        Error(i, "a carriage return ends a line too early: the block is not read");
        return;
      }
    }
    if (numbers[1] < 0 || (is_matrix && numbers[3] < 0)) {
      Error(current->at, "a negative count");
    } else if (!is_matrix) {
      CheckRow(current->at + 1, static_cast<std::size_t>(numbers[1]), "element");
    } else {
      CheckRows(static_cast<std::size_t>(numbers[1]), static_cast<std::size_t>(numbers[3]));
    }
  }

  /// Checks a block of elements that opens at a line. Gives the index behind it, or 0 if its end is
  /// not known.
  std::size_t CheckRow(std::size_t open, std::size_t count, const std::string& what) {
    if (!CheckOpening(open)) return 0;
    std::size_t found = 0;
    std::size_t i = open + 1;
    for (; i < current->stop && FirstWord(i) != "}"; ++i, ++found) {
      LINE_WORDS words(lines[i].text);
      if (found < count) CheckWords(i, ElementOf(current->code), words);
    }
    // Behind a block that is not closed, surplus lines would only be noise.
    if (found > count && i < current->stop) {
      Error(open + 1 + count, "surplus: the block has " + Plural(count, what) + " by its head");
    }
    return CheckClose(i, found, count, what);
  }

  void CheckRows(std::size_t rows, std::size_t columns) {
    if (!CheckOpening(current->at + 1)) return;
    std::size_t found = 0;
    std::size_t i = current->at + 2;
    for (; i < current->stop && FirstWord(i) != "}"; ++found) {
      if (found == rows) {
        Error(i, "surplus: the matrix has " + Plural(rows, "row") + " by its head");
      }
      i = CheckRow(i, columns, "column");
      if (i == 0) return;
    }
    CheckClose(i, found, rows, "row");
  }

  bool CheckOpening(std::size_t open) {
    if (open >= current->stop) {
      Error(current->at, "the line behind must open a block with {");
      return false;
    }
    LINE_WORDS words(lines[open].text);
    if (words.Next() != "{") {
      Error(open, "a { must stand alone in this line");
      return false;
    }
    const std::string surplus(words.Next());
    if (!surplus.empty()) Error(open, "'" + surplus + "' behind the { is lost");
    return true;
  }

  std::size_t CheckClose(std::size_t close, std::size_t found, std::size_t count,
                         const std::string& what) {
    if (close >= current->stop) {
      Error(current->at, "the block is not closed");
      return 0;
    }
    if (found < count) {
      Error(close, "the block closes behind " + Plural(found, what) + ", its head says " +
                       std::to_string(count));
    }
    return close + 1;
  }

  /// Lines that are part of no entry, no comment and not empty.
  void CheckLooseLines() {
    std::size_t next = 0;
    const auto check_up_to = [&](std::size_t stop) {
      for (; next < stop; ++next) {
        const std::string& text = lines[next].text;
        if (text.starts_with('#') || lines[next].is_continued) continue;
        if (LINE_WORDS(text).Next().empty()) continue;
        Warn(next, LooksLikeEntry(text) ? "an indented key is never found"
                                        : "the line belongs to no entry");
      }
    };
    for (const POOL_ENTRY& entry : pool.entries) {
      check_up_to(entry.at);
      next = entry.stop;
    }
    check_up_to(lines.size());
  }

  const POOL_DOCUMENT& pool;
  const std::vector<POOL_LINE>& lines;
  const POOL_ENTRY* current = nullptr;
  std::vector<FINDING> findings;
  std::size_t errors = 0;
};

}  // namespace

TOOL_STATUS CheckPools(const std::vector<std::string>& files) {
  TOOL_STATUS status = GOOD;
  for (const std::string& file : files) {
    try {
      const POOL_DOCUMENT pool = ReadDocument(file);
      if (!POOL_CHECK(pool).Tell()) status = FINDINGS;
    } catch (const std::runtime_error& error) {
      Tell(file, 1, SEVERITY::ERROR, error.what());
      status = FINDINGS;
    }
  }
  return status;
}

}  // namespace varnoth
