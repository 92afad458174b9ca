#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pool/type_table.hpp"
#include "tools/message.hpp"

namespace varnoth {

enum class SHAPE { SCALAR, VECTOR, MATRIX };

SHAPE ShapeOf(TYPE_CODE code);
/// The scalar type of a vector's or matrix's elements; a scalar's own.
TYPE_CODE ElementOf(TYPE_CODE code);
/// The types of the parts of a scalar: two for a pair, a complex number and an indexed value.
std::vector<TYPE_CODE> PartsOf(TYPE_CODE scalar);

/// Takes the words of a line one by one.
class LINE_WORDS {
 public:
  explicit LINE_WORDS(std::string_view text) : line(text) {}
  /// The next word; empty behind the last one.
  std::string_view Next();
  /// Takes a text that starts at the next word, with its quotes if it has any. A NUL ends it.
  std::string_view NextText();

 private:
  void SkipBlanks();

  std::string_view line;
  std::size_t position = 0;
};

/// What is wrong with a value's words.
struct WORD_FINDING {
  SEVERITY severity;
  std::string text;
};

/// Takes the words of one value and compares them with what the pool's reader makes of them. An
/// error: the reader refuses them, or reads another value than stands there.
std::optional<WORD_FINDING> CheckValue(TYPE_CODE scalar, LINE_WORDS& words);

}  // namespace varnoth
