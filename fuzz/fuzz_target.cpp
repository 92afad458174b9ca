#include "fuzz_target.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "framework/controller_ifc.hpp"
#include "log/log.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth::fuzz {

#ifdef VARNOTH_FUZZES_TOOLS
#define VARNOTH_TOOLS_TARGETS(ROW)  \
  ROW(annotations, FuzzAnnotations) \
  ROW(oem, FuzzOem)                 \
  ROW(prm, FuzzPrm)                 \
  ROW(gamma_par, FuzzGammaPar)      \
  ROW(run_logs, FuzzRunLogs)
#else
#define VARNOTH_TOOLS_TARGETS(ROW)
#endif
// A target takes any bytes and must neither crash nor break what it requires.
#define VARNOTH_TARGETS(ROW)               \
  ROW(configuration, FuzzConfiguration)    \
  ROW(values, FuzzValues)                  \
  ROW(pools, FuzzPools)                    \
  ROW(universal_times, FuzzUniversalTimes) \
  ROW(mission_times, FuzzMissionTimes)     \
  ROW(leap_seconds, FuzzLeapSeconds)       \
  ROW(orbits, FuzzOrbits)                  \
  ROW(records, FuzzRecords)                \
  VARNOTH_TOOLS_TARGETS(ROW)
#define VARNOTH_DECLARED(NAME, RUN) void RUN(const std::string& input);
#define VARNOTH_ROW(NAME, RUN) {#NAME, RUN},
VARNOTH_TARGETS(VARNOTH_DECLARED)

static void (*target)(const std::string& input) = nullptr;

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "required: %s\n", what);
  std::abort();
}

// Streams cost more than most targets, and so do the pages of a file that is emptied first.
void WriteFile(const char* path, const std::string& content) {
  const int descriptor = ::open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  const auto size = static_cast<ssize_t>(content.size());
  Require(::write(descriptor, content.data(), content.size()) == size &&
              ::ftruncate(descriptor, size) == 0 && ::close(descriptor) == 0,
          "a file to be written");
}

std::string ReadFile(const char* path) {
  const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
  struct stat status {};
  Require(::fstat(descriptor, &status) == 0, "a file to be read");
  std::string content(static_cast<std::size_t>(status.st_size), '\0');
  Require(::read(descriptor, content.data(), content.size()) == status.st_size &&
              ::close(descriptor) == 0,
          "a file is read whole");
  return content;
}

/// Takes the target that the variable FUZZ_TARGET names, and prepares the process: a directory of
/// its own to work in, a log that shows nothing and, if FUZZ_TRAPS is set, arithmetic that traps.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  target = std::map<std::string, decltype(target)>{
      VARNOTH_TARGETS(VARNOTH_ROW)}[std::getenv("FUZZ_TARGET")];
  Require(target != nullptr, "FUZZ_TARGET names a target");
  GlobalLog.set_file_level(NO_LEVEL);
  GlobalLog.set_screen_level(NO_LEVEL);
  static std::string scratch = std::filesystem::temp_directory_path() / "fuzz_XXXXXX";
  Require(mkdtemp(scratch.data()) != nullptr, "a scratch directory");
  std::filesystem::current_path(scratch);
  GlobalLog.change_file("log");  // removes the log's temporary file
  std::atexit([] { std::filesystem::remove_all(scratch); });
  if (std::getenv("FUZZ_TRAPS") != nullptr) enable_fp_traps();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  target(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}

}  // namespace varnoth::fuzz
