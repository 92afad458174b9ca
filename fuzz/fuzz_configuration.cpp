#include <cstring>

#include "framework/controller_ifc.hpp"
#include "fuzz_target.hpp"

namespace varnoth::fuzz {

/// Reads a configuration file of any bytes: each value that it finds is one word.
void FuzzConfiguration(const std::string& input) {
  WriteFile("own.cfg", input);
  // The arguments win, so that the file can neither name a log elsewhere nor set a level.
  std::string words[] = {"fuzz", "-pcf", "own.cfg", "-lfn", "log", "-lfl", "none", "-lsl", "none"};
  char* argv[std::size(words)];
  for (std::size_t i = 0; i < std::size(words); ++i) argv[i] = words[i].data();
  CONTROLLER_IFC controller;
  if (!Accepts([&] { controller.init(std::size(words), argv, false); })) return;
  for (const char* key : {"LocalHeight", "k", "MasterPar", ""}) {
    STRING value("old");
    if (!Accepts([&] { controller.find_parameter(key, value); })) continue;
    Require(value.Length() < 1024, "a value is part of a line");
    Require(std::strcspn(value.c_str(), " \t\n") == value.Length(), "a value is one word");
  }
}

}  // namespace varnoth::fuzz
