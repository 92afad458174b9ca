#pragma once

#include <string>

#include "foundation/errors.hpp"

namespace varnoth::fuzz {

/// Ends the process, by an abort that the fuzzer reports, if a requirement does not hold.
void Require(bool holds, const char* what);

void WriteFile(const char* path, const std::string& content);
std::string ReadFile(const char* path);

/// Runs an action that may refuse its input by any of the system's failures; false if it refuses.
template <class ACTION>
bool Accepts(ACTION action) {
  try {
    action();
    return true;
  } catch (const ERROR_EXCEPTION&) {
  } catch (const char*) {
  }
  return false;
}

}  // namespace varnoth::fuzz
