#include "fuzz_target.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "framework/controller_ifc.hpp"
#include "log/log.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth::fuzz {

#define VARNOTH_TARGETS(ROW)               \
  ROW(configuration, FuzzConfiguration)    \
  ROW(values, FuzzValues)                  \
  ROW(pools, FuzzPools)                    \
  ROW(universal_times, FuzzUniversalTimes) \
  ROW(mission_times, FuzzMissionTimes)     \
  ROW(leap_seconds, FuzzLeapSeconds)       \
  ROW(orbits, FuzzOrbits)                  \
  ROW(records, FuzzRecords)
#define VARNOTH_DECLARED(NAME, RUN) void RUN(const std::string& input);
#define VARNOTH_ROW(NAME, RUN) {#NAME, RUN},
VARNOTH_TARGETS(VARNOTH_DECLARED)

namespace {

constexpr TARGET TARGETS[] = {VARNOTH_TARGETS(VARNOTH_ROW)};
std::string scratch;

}  // namespace

const TARGET* FindTarget(const std::string& name) {
  for (const TARGET& target : TARGETS) {
    if (name == target.name) return &target;
  }
  return nullptr;
}

void Prepare() {
  GlobalLog.set_file_level(NO_LEVEL);
  GlobalLog.set_screen_level(NO_LEVEL);
  scratch = std::filesystem::temp_directory_path() / "fuzz_XXXXXX";
  Require(mkdtemp(scratch.data()) != nullptr, "a scratch directory");
  std::filesystem::current_path(scratch);
  GlobalLog.change_file("log");  // takes its temporary file away
  std::atexit([] { std::filesystem::remove_all(scratch); });
  if (std::getenv("FUZZ_TRAPS") != nullptr) enable_fp_traps();
}

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "required: %s\n", what);
  std::abort();
}

void WriteFile(const char* path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const char* path) {
  std::ifstream stream(path, std::ios::binary);
  Require(stream.is_open(), "a file to be read");
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace varnoth::fuzz
