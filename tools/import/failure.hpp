#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "tools/message.hpp"

namespace varnoth::tools {

/// What ends an import, with the place in the foreign file, of which the text may hold a NUL: it
/// would end `what()`.
class IMPORT_FAILURE : public std::runtime_error {
 public:
  IMPORT_FAILURE(std::string where, std::size_t at, const std::string& text)
      : std::runtime_error(Printable(text)), file(std::move(where)), line(at) {}

  std::string file;
  std::size_t line;
};

}  // namespace varnoth::tools
