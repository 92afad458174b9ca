#include "fuzz_target.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "framework/controller_ifc.hpp"
#include "log/log.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth::fuzz {

void FuzzConfiguration(const std::string& input);
void FuzzValues(const std::string& input);
void FuzzPools(const std::string& input);
void FuzzUniversalTimes(const std::string& input);
void FuzzMissionTimes(const std::string& input);
void FuzzLeapSeconds(const std::string& input);
void FuzzOrbits(const std::string& input);
void FuzzRecords(const std::string& input);

namespace {

constexpr TARGET TARGETS[] = {
    {"configuration", FuzzConfiguration},
    {"values", FuzzValues},
    {"pools", FuzzPools},
    {"universal_times", FuzzUniversalTimes},
    {"mission_times", FuzzMissionTimes},
    {"leap_seconds", FuzzLeapSeconds},
    {"orbits", FuzzOrbits},
    {"records", FuzzRecords},
};

}  // namespace

const TARGET* FindTarget(const std::string& name) {
  const auto found = std::find_if(std::begin(TARGETS), std::end(TARGETS),
                                  [&](const TARGET& target) { return name == target.name; });
  return found != std::end(TARGETS) ? found : nullptr;
}

void Prepare() {
  GlobalLog.set_file_level(NO_LEVEL);
  GlobalLog.set_screen_level(NO_LEVEL);
  std::string directory = std::filesystem::temp_directory_path() / "fuzz_XXXXXX";
  Require(mkdtemp(directory.data()) != nullptr, "a scratch directory");
  std::filesystem::current_path(directory);
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
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace varnoth::fuzz
