#pragma once

#include <string>

#include "tools/pool/document.hpp"

namespace varnoth {

/// A scalar or element as text: numbers with as many digits as give the same number again, the
/// parts of a pair with a blank between, texts with quotes if wanted.
std::string ElementText(const JSON& element, TYPE_CODE code, bool with_quotes);

}  // namespace varnoth
