#pragma once

#include <string>

#include "foundation/errors.hpp"

namespace varnoth::fuzz {

/// A function that takes any bytes and must neither crash nor break what it requires.
struct TARGET {
  const char* name;
  void (*run)(const std::string& input);
};

/// The target of a name; null for none.
const TARGET* FindTarget(const std::string& name);

/// Prepares the process: a directory of its own to work in, a log that shows nothing and, where the
/// variable FUZZ_TRAPS is set, arithmetic that traps.
void Prepare();

/// Ends the process, by an abort that the fuzzer reports, where a requirement does not hold.
void Require(bool holds, const char* what);

void WriteFile(const char* path, const std::string& content);
std::string ReadFile(const char* path);

/// Runs an action that may refuse its input by any of the system's failures.
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
