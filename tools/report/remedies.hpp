#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnoth::tools {

struct REMEDY {
  std::string meaning;
  std::string action;
};

/// The page on messages and their remedies (docs/troubleshooting.md), which has them all.
class REMEDY_BOOK {
 public:
  /// From the page's text: tables whose rows have texts in backquotes, a meaning and an action.
  explicit REMEDY_BOOK(std::string_view page);

  /// The row for a line of a log, as its index in `rows`: of the texts that fit, the one with most
  /// characters that do not vary. Nothing for a line that the page doesn't have at that level.
  std::optional<std::size_t> Find(const std::string& level, std::string_view text) const;

  std::vector<REMEDY> rows;

 private:
  struct PATTERN {
    std::string level;
    std::vector<std::string> parts;  ///< what stands between the parts that vary
    std::size_t length = 0;          ///< of all parts
    std::size_t row = 0;
  };
  std::vector<PATTERN> patterns;
};

}  // namespace varnoth::tools
