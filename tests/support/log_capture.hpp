#pragma once

#include <gtest/gtest.h>

#include <string>

namespace varnoth::test {

/// A new directory; the object removes it.
class TEMPORARY_DIRECTORY {
 public:
  TEMPORARY_DIRECTORY();
  ~TEMPORARY_DIRECTORY();
  TEMPORARY_DIRECTORY(TEMPORARY_DIRECTORY&&) = delete;
  std::string Path(const std::string& name) const { return directory + "/" + name; }

 private:
  std::string directory;
};

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);

/// A fixture that takes the log of a test from TRACE on, with nothing on the screen.
struct LoggedTest : testing::Test {
  LoggedTest();
  /// All lines so far, each as "LABEL : log : text\n".
  std::string Log() const;
  /// All lines so far without their heads, and the log then starts anew.
  std::string TakeLog() { return Take(0, 14); }
  /// The same, each as "ALARM text": the label has five characters, as in "WARN  text".
  std::string TakeLines() { return Take(5, 8); }

  TEMPORARY_DIRECTORY directory;

 private:
  std::string Take(std::size_t head, std::size_t count);
};

/// The thrown text of an action, or "nothing thrown".
template <class ACTION>
std::string ThrownText(ACTION action) {
  try {
    action();
  } catch (const char* text) {
    return text;
  }
  return "nothing thrown";
}

}  // namespace varnoth::test
