#include "interpolation/numerics/nrerror.hpp"

#include <cstdio>
#include <cstdlib>

namespace varnoth {

void nrerror(const char* text) {
  std::fprintf(stderr, "Numerical Recipes run-time error...\n%s\n...now exiting to system...\n",
               text);
  std::exit(1);
}

}  // namespace varnoth
