#pragma once

#include <string>

#include "pool/value_traits.hpp"

namespace varnoth {

/// Builds the exact text of one pool entry: comment lines, key, type word, value or block, and the
/// empty line behind it.
class ENTRY_TEXT {
 public:
  /// Nothing.
  ENTRY_TEXT() = default;
  /// Comments and the key line up to where the value starts.
  ENTRY_TEXT(const char* key, TYPE_CODE type, const ARRAY<STRING>& comments);

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
  /// Whether a reader will meet every line whole.
  bool FitsReader() const;

 private:
  template <class X>
  void AppendElement(const X& value);
  template <class X>
  void AppendBlock(const X* elements, int count, int block_indent);
  void AppendRange(const RANGE<int>& range);
  /// A brace on a line of its own; a new line is begun ahead of it.
  void OpenBrace(int block_indent);
  void CloseBrace(int block_indent);

  std::string text;
  int indent = 0;  ///< of the entry's block
};

}  // namespace varnoth
