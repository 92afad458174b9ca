// The entry of clang's libFuzzer; the variable FUZZ_TARGET names the target.

#include <cstdint>
#include <cstdlib>

#include "fuzz_target.hpp"

static const varnoth::fuzz::TARGET* target = nullptr;

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  const char* const name = std::getenv("FUZZ_TARGET");
  target = varnoth::fuzz::FindTarget(name != nullptr ? name : "");
  varnoth::fuzz::Require(target != nullptr, "FUZZ_TARGET names a target");
  varnoth::fuzz::Prepare();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  target->run(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
