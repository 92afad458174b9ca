// Hands saved inputs to the target as libFuzzer does: replay <absolute path>...

#include <cstdint>

#include "fuzz_target.hpp"

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  varnoth::fuzz::Require(argc > 1, "there are inputs");
  LLVMFuzzerInitialize(&argc, &argv);
  for (int i = 1; i < argc; ++i) {
    const std::string input = varnoth::fuzz::ReadFile(argv[i]);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
}
