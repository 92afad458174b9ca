#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/field.hpp"
#include "tools/import/failure.hpp"
#include "tools/import/source.hpp"

namespace varnoth::tools {

/// The same text with the letters A to Z for a to z.
std::string Upper(std::string text);
/// The words of a line, between any of the dividers: without others blanks, tabs and carriage
/// returns.
std::vector<std::string_view> WordsOf(std::string_view line, const char* dividers = " \t\r");
std::vector<std::string_view> LinesOf(const std::string& content);

/// A text file of a value a line behind a keyword, as "PRF = 486.5" or "prf: 486.5 Hz". Lines
/// without the divider are left out; of a keyword that stands twice the last one counts, as in the
/// programs that read these files. The operations throw IMPORT_FAILURE, with the line, for what is
/// missing or is no value of the wanted kind.
class KEYED_TEXT {
 public:
  KEYED_TEXT(SOURCE_FILE source, char divider);

  /// Whether a key has a value.
  bool Has(const std::string& key) const;
  /// The whole value, without the blanks around it.
  std::string Text(const std::string& key) const;
  /// The first words of a value as numbers, whatever follows them.
  std::vector<double> Numbers(const std::string& key, std::size_t count) const;
  double Number(const std::string& key) const { return Numbers(key, 1)[0]; }
  std::int64_t Whole(const std::string& key) const;

  [[noreturn]] void Fail(const std::string& key, const std::string& text) const;
  const std::string& Name() const { return file.name; }

 private:
  struct PLACE {
    std::size_t line;
    std::string_view value;
  };

  SOURCE_FILE file;
  std::map<std::string, PLACE, std::less<>> places;
};

}  // namespace varnoth::tools
