// Runs saved inputs through a target: replay <target> <file>...

#include <cstdio>
#include <string>
#include <vector>

#include "fuzz_target.hpp"

int main(int argc, char** argv) {
  using namespace varnoth::fuzz;
  const TARGET* const target = argc > 1 ? FindTarget(argv[1]) : nullptr;
  Require(target != nullptr, "the first word names a target");
  Require(argc > 2, "there are inputs");
  std::vector<std::string> inputs;
  for (int i = 2; i < argc; ++i) inputs.push_back(ReadFile(argv[i]));
  Prepare();
  for (const std::string& input : inputs) target->run(input);
  std::printf("%s: %zu inputs\n", target->name, inputs.size());
}
