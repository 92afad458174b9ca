#pragma once

#include <string>

#include "pool/value_traits.hpp"

namespace varnoth {

/// Builds the exact text of one pool entry: comment lines, key, type word, value or block, and the
/// empty line after it.
///
///     ENTRY_TEXT text("fringe_count", INT_32, ARRAY<STRING>("number of fringes"));
///     text.Append(42);
///     std::fputs(text.Text().c_str(), stdout);
///
/// Numbers have the form of printf's "%E". A number on its own, or in a vector or matrix, has 10
/// digits after the point as a float and 17 as a double; a part of a complex number, a pair or an
/// indexed value has 6 and 15. The 6 and 15 digits do not always give the same number back. A quote
/// in a text gets a backslash in front; backslashes and line ends stay as they are.
class ENTRY_TEXT {
 public:
  /// The empty text.
  ENTRY_TEXT() = default;
  /// Comments and the key line up to the start of the value.
  ENTRY_TEXT(const char* key, TYPE_CODE type, const ARRAY<STRING>& comments);

  /// Adds the value and ends the entry.
  template <POOL_SCALAR X>
  void Append(const X& value) {
    AppendElement(value);
    text += "\n\n";
  }
  template <class X>
  void Append(const ARRAY<X>& value);
  template <class X>
  void Append(const MATRIX<X>& value);

  const std::string& Text() const { return text; }
  /// Whether every line, with its line end, is within the reader's limit of 1024 bytes.
  bool FitsReader() const;

 private:
  template <class X>
  void AppendElement(const X& value);
  template <class X>
  void AppendBlock(const X* elements, int count, int block_indent);
  void AppendRange(const RANGE<int>& range);
  /// A brace on a line of its own. The opening one starts the new line itself.
  void OpenBrace(int block_indent);
  void CloseBrace(int block_indent);

  std::string text;
  int indent = 0;  ///< of the entry's block
};

}  // namespace varnoth
