// Runs saved inputs through a target: replay <target> <absolute path>...

#include <cstdio>

#include "fuzz_target.hpp"

int main(int argc, char** argv) {
  using namespace varnoth::fuzz;
  const TARGET* const target = argc > 1 ? FindTarget(argv[1]) : nullptr;
  Require(target != nullptr, "the first word names a target");
  Require(argc > 2, "there are inputs");
  Prepare();
  for (int i = 2; i < argc; ++i) target->run(ReadFile(argv[i]));
  std::printf("%s: %d inputs\n", target->name, argc - 2);
}
