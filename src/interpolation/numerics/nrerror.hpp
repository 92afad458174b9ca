#pragma once

namespace varnoth {

/// How the numerical kernels fail: tells the fault on standard error and ends the process with
/// status 1. There is no recovery; the kernels are those of Press et al., Numerical Recipes, second
/// edition (1992), with its one-based arrays, and keep its reaction.
[[noreturn]] void nrerror(const char* text);

}  // namespace varnoth
