#pragma once

namespace varnoth {

/// How the numerical kernels fail: writes the text to standard error and ends the process by
/// std::exit with status 1. The kernels follow Press et al., Numerical Recipes, second edition
/// (1992), in their one-based arrays and in this reaction.
[[noreturn]] void nrerror(const char* text);

}  // namespace varnoth
